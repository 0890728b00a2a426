#pragma once
// Gallery style sheets come with definitions from other authors, and image
// lists with shared projects; a transformation must never read the user's
// files or reach the network. These checks refuse, before anything is
// loaded, whatever could make an XSLT processor do so, whichever processor
// runs the style sheet and whatever security settings it has.
#include <string_view>

// Whether a style sheet could read a file or reach the network: it calls
// document() (in any spelling character references allow), imports or
// includes another style sheet, uses an extension element named document,
// declares a document type (whose entities can name files or URLs), or uses
// the script extension namespace of the Windows XML component.
bool StylesheetReachesOutside(std::string_view stylesheet);

// Whether an XML text declares a document type, through which external
// entities could pull in files or URLs.
bool DeclaresDocumentType(std::string_view xml);
