#pragma once

#include "program/Products.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace manual {

using Names = std::set<std::string>;

/// Nothing where the file cannot be read.
std::string textOf(const std::filesystem::path& file);

/// What a pattern's first group finds, in its order.
std::vector<std::string> allOf(const std::string& text, const char* pattern);

/// The file of a page, by its name without the section.
std::string pageFile(const std::string& name);

/// Of a page's section, or a part of one, each term with its explanation.
std::map<std::string, std::string> entries(const std::string& page, const std::string& title);

/// The first word of each term, and each of several that a comma parts: "-h, --help".
Names termsOf(const std::string& page, const std::string& title);

/// A product's number: what the product is at its place in the list of them.
int variantOf(std::string_view product);

} // namespace manual
