#pragma once
// What a file operation came to: success, or a sentence that says what
// failed and why, naming the file ("cannot write '/srv/site/a.css': No space
// left on device"), fit to show a user as it is.
#include <string>
#include <utility>

class FileResult {
public:
    FileResult() = default;  // success
    static FileResult Failed(std::string why) {
        FileResult result;
        result.why_ = why.empty() ? std::string("failed") : std::move(why);
        return result;
    }

    bool ok() const { return why_.empty(); }
    explicit operator bool() const { return ok(); }
    const std::string& why() const { return why_; }

private:
    std::string why_;
};
