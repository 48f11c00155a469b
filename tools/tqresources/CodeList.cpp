#include "tools/tqresources/CodeList.h"

#include <fstream>
#include <sstream>

std::vector<CodeLine> readCodeList(const std::filesystem::path& path) {
    std::vector<CodeLine> lines;
    std::ifstream file(path);
    for (std::string text; std::getline(file, text);) {
        std::istringstream columns(text);
        CodeLine line;
        std::getline(columns, line.code, '\t');
        std::getline(columns, line.name, '\t');
        std::getline(columns, line.datum, '\t');
        lines.push_back(line);
    }
    return lines;
}
