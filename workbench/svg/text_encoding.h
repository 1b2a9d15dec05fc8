/// From a file's bytes to the text that the XML parser gets.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace workbench {

/// UTF-8 of an XML file by its byte order mark, its first bytes or its declaration; without any, UTF-8.
/// ISO-8859-1 is read as Windows-1252, as every browser does.  Bytes that are no UTF-8 in a file that says
/// so become U+FFFD, and `*damaged` is set.
/// @return false, with a sentence in `*error`, for an encoding that is not known here
bool DecodeXml(std::span<const uint8_t> bytes, std::string* text, bool* damaged, std::string* error);

/// Replaces the document type declaration by blanks and its internal entities wherever they are used, as the
/// XML parser knows the five predefined ones alone.  Entities that nobody declared stay as they are;
/// external ones are empty.  Comments and CDATA sections are left alone.
/// @return false, with a sentence in `*error`, if entities contain themselves or grow beyond
///         kMaxEntityGrowth
bool ExpandEntities(std::string* text, std::string* error);

/// Whether a file can hold these bytes as text: well-formed UTF-8 of signs that XML knows.
bool IsXmlText(std::string_view text);

/// Appends a code point as UTF-8; what is no character becomes U+FFFD.
void AppendUtf8(std::string* text, uint32_t codePoint);

} // namespace workbench
