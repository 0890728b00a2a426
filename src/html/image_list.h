#pragma once
// The image-list text: an XML document written by the document writer (with
// its declaration), root GALLERY, one IMAGE per image in list order, each with
// the children FILENAME, URL, TARGET, TITLE and DESCRIPTION in this order,
// each only when its text is not empty. This is how the Files dialog stores an
// image-list property's value.
#include <string>
#include <string_view>
#include <vector>

struct ImageListEntry {
    std::string fileName;  // full path of the picture
    std::string title = {};
    std::string description = {};
    std::string link = {};
    std::string target = {};
};

std::string WriteImageList(const std::vector<ImageListEntry>& images);
