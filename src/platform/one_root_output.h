#pragma once
// A gallery style sheet writes one top-level element per picture. The
// system's XML component takes time that grows with the square of the number
// of top-level nodes in a transformation's output, but only linear time when
// they sit inside one root element. So the transformer runs a copy of the
// style sheet whose root template wraps its output in one element, and takes
// the wrapper off the text again.
//
// The wrapper starts with a text, and the component never indents inside an
// element that holds text, while at the top level it may. So taking the
// wrapper off gives exactly the text of the style sheet as given for output
// of a flat shape: text and elements without element children. Anything
// else, for example an element inside an element, is refused, and the
// transformer then runs the style sheet as given.
#include <optional>
#include <string>
#include <string_view>

namespace one_root {

// The style sheet with the content of its root template wrapped in the
// wrapper element, or nothing when the wrapping would not be safe to undo:
// no explicit XML output method, or not exactly one template that matches
// "/" written plainly.
std::optional<std::string> WrapRootTemplate(std::string_view stylesheet);

// The text the unwrapped style sheet gives, rebuilt from the output of the
// wrapped one, or nothing when that output is not of the flat shape.
std::optional<std::string> Unwrap(std::string_view output);

}  // namespace one_root
