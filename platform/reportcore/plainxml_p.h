#pragma once

#include <string_view>

namespace REPORTGENERATOR {

/// Elements that are nested deeper than this are refused.
constexpr int deepestElement = 64;

/// Whether a document is in UTF-8 and so plain that nothing can be wrong with it but end tags that do not match: one
/// root element, elements without attributes whose names are plain ASCII, nested no deeper than `deepestElement`, and
/// texts whose only entities are those that XML itself names. An XML declaration must read as QXmlStreamWriter writes
/// it to bytes or to a text. Comments, character data sections, processing instructions, prefixes, carriage returns and
/// ">" make a document not plain, which says nothing of whether it is well-formed.
bool isPlainXml(std::string_view document);

} // namespace REPORTGENERATOR
