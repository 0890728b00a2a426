#pragma once
// The result of a function of one text, kept until it is asked for another
// text: for work that is repeated on the same text again and again (the
// design view makes the same gallery on every refresh).
#include <string>
#include <string_view>

template <class Result>
class CTextMemo {
public:
    template <class Function>
    const Result& Get(std::string_view text, Function function) {
        if (!known_ || text != text_) {
            text_.assign(text.data(), text.size());
            result_ = function(text);
            known_ = true;
        }
        return result_;
    }

private:
    std::string text_;
    Result result_{};
    bool known_ = false;
};
