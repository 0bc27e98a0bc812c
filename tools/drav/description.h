// Facts about a file in words, and for other programs.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "facts.h"

// Prints one line for each fact on standard output, below the file's name.
void printFacts(const std::string &name, const Facts &facts);

// The same as an object. Throws Failure for a picture with too many opcodes to list so.
nlohmann::ordered_json factsAsJson(const std::string &name, const Facts &facts);
