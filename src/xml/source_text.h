#pragma once
// A text of an element that the parser found in the document's source: held
// as a view into the source until it is first read, then as a string of its
// own. Most texts of a large tree are never read (the 4 KB payloads of a
// definition that is only inspected, say), so they are never copied.
//
// The source must outlive the view: the document keeps its source text
// while the tree lives, and clears its root's texts before it parses again.
// Reading fills the string, even through const: an element is not to be
// read from two threads at once.
#include <string>
#include <string_view>

class CSourceText {
public:
    const std::string& Get() const {
        if (!view_.empty()) {
            own_.assign(view_.data(), view_.size());
            view_ = std::string_view();
        }
        return own_;
    }
    // The text without making it a string of its own.
    std::string_view View() const { return view_.empty() ? std::string_view(own_) : view_; }

    void Set(std::string_view text) {
        own_.assign(text.data(), text.size());  // text may lie in own_ or in the viewed source
        view_ = std::string_view();
    }
    // Empties the text and gives it as a string of its own, to be written
    // anew in place (its buffer is kept; a viewed source is not copied).
    std::string& Rewrite() {
        view_ = std::string_view();
        own_.clear();
        return own_;
    }
    // Refers to text in the document's source instead of copying it.
    void Refer(std::string_view source) {
        own_.clear();
        view_ = source;
    }
    void clear() { Rewrite(); }

private:
    mutable std::string own_;
    mutable std::string_view view_;
};
