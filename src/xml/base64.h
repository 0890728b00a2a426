#pragma once
// Base64 (RFC 4648 alphabet), decoded leniently: every character outside the
// alphabet (line breaks, blanks, '=' and bytes above 127) is skipped, and '='
// does not end the text, so concatenated blocks decode to their concatenation.
#include <string>
#include <string_view>

// Decodes source[0, sourceLength) into destination.
// *length: on entry the capacity of destination; on return the number of bytes
// the whole text decodes to, whether or not they fitted.
// Returns true when every decoded byte was stored; false when source or length
// is null, destination is null (a size query) or the capacity was too small.
// Bytes are stored group by group only while they fit.
bool Base64Decode(const char* source, int sourceLength, unsigned char* destination, int* length);

// The same decoding with its whole outcome: whether everything fitted, the
// full decoded length and how many bytes were actually stored (the complete
// groups that fitted before the capacity ran out). destination may be null.
struct Base64Outcome {
    bool ok;
    int length;
    int stored;
};
Base64Outcome Base64DecodeInto(const char* source, int sourceLength, unsigned char* destination, int capacity);

// The caller pattern used throughout the system: decode text into a zeroed
// buffer of its length plus one, with its length as capacity. Returns the
// decoded bytes on success, the text unchanged on failure.
std::string Base64DecodeOrKeep(std::string_view text);

// Encodes bytes; with lineLength > 0 the text is broken into lines of that many
// characters joined by CR LF (no break after the last line).
std::string Base64Encode(std::string_view bytes, std::size_t lineLength = 0);
