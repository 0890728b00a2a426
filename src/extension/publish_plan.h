#pragma once
// What publishing an object does, step by step, before anything is written:
// the folders to make, the payload files to write and the user's files and
// pictures to copy. The plug-in carries a plan out as it comes; pwext first
// checks it (entries left out, two files published under one name) and
// refuses before writing anything.
#include <string>
#include <vector>

struct PublishStep {
    enum class Action { kMakeFolders, kWrite, kCopy };
    Action action = Action::kWrite;
    std::string target;   // the folder made or the file written
    std::string source;   // Copy: the user's file
    std::string content;  // Write: the bytes
};

struct PublishPlan {
    std::vector<PublishStep> steps;
    // Entries of the definition or image lists left out because they would
    // reach outside the folder they belong in, or name no file, each as a
    // sentence naming the entry.
    std::vector<std::string> leftOut;
};
