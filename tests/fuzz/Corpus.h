// The committed inputs of the fuzz targets.
#pragma once

#include <map>
#include <string>

// The content of every file of corpus/<target>/, by file name.
std::map<std::string, std::string> CorpusOf(const std::string& target);
