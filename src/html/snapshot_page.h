#pragma once
// The page that the design view's HTML snapshot loads: a fixed HTML 4.01
// Transitional document whose transparent body holds the object's body HTML,
// as given, inside one span. Every line ends with CR LF; the body HTML is
// inserted between "<span>" and "</span>" with nothing added. The plug-in's
// renderer and `pwext preview` both load exactly these bytes.
#include <string>
#include <string_view>

std::string SnapshotPageText(std::string_view bodyHtml);
