#include "tools/tqproj/CatalogCommand.h"

#include "tools/tqproj/Diagnostics.h"
#include "tools/tqproj/OutputBuffer.h"
#include "tools/tqproj/TextSearch.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const CatalogueFamily& family) { return {{"family", family.name}, {"systems", family.count}}; }

Json jsonOf(const CatalogueEntry& entry) {
    return {{"code", entry.code},
            {"name", entry.name},
            {"family", entry.family},
            {"externalName", entry.externalName},
            {"area", entry.area},
            {"projected", entry.isProjected},
            {"deprecated", entry.isDeprecated}};
}

std::string lineOf(const CatalogueFamily& family) {
    return withoutControls(family.name) + "\t" + std::to_string(family.count) + "\n";
}

std::string lineOf(const CatalogueEntry& entry) {
    return withoutControls(entry.code) + "\t" + withoutControls(entry.name) + "\t" +
           withoutControls(entry.family) + "\n";
}

template <class Item>
std::string textOf(const std::vector<Item>& items, bool isJson) {
    std::string text;
    if (!isJson) {
        for (const Item& item : items) {
            text += lineOf(item);
        }
        return text;
    }
    Json list = Json::array();
    for (const Item& item : items) {
        list.push_back(jsonOf(item));
    }
    constexpr int indent = 2;
    constexpr bool ensureAscii = false;
    return list.dump(indent, ' ', ensureAscii, Json::error_handler_t::replace) + "\n";
}

} // namespace

CatalogCommand::CatalogCommand(CatalogOptions options, OutputBuffer& output, Diagnostics& diagnostics)
    : _options(std::move(options)), _output(output), _diagnostics(diagnostics) {}

ExitCode CatalogCommand::run() {
    const std::vector<CatalogueFamily> families = Catalogue::families();
    if (families.empty()) {
        return refuse("PROJ has no database: there are no reference systems");
    }
    if (_options.family && !familyExists(families)) {
        return refuse("no family is called " + printableText(*_options.family) +
                      " (tqproj catalog lists them)");
    }
    const ExitCode listed = listsFamilies() ? listFamilies(families) : listSystems();
    return graver(listed, _output.finish(_diagnostics));
}

bool CatalogCommand::familyExists(const std::vector<CatalogueFamily>& families) const {
    return std::ranges::any_of(families, [this](const CatalogueFamily& family) {
        return isSameText(family.name, *_options.family);
    });
}

ExitCode CatalogCommand::listFamilies(const std::vector<CatalogueFamily>& families) {
    _output.text() += textOf(families, _options.isJson);
    return ExitCode::Success;
}

ExitCode CatalogCommand::listSystems() {
    std::vector<CatalogueEntry> systems = Catalogue::entries();
    std::erase_if(systems, [this](const CatalogueEntry& entry) { return !isWanted(entry); });
    _output.text() += textOf(systems, _options.isJson);
    return systems.empty() ? ExitCode::Incomplete : ExitCode::Success;
}

bool CatalogCommand::isWanted(const CatalogueEntry& entry) const {
    return (!_options.family || isSameText(entry.family, *_options.family)) &&
           (!_options.search ||
            holdsAllWords(entry.name + " " + entry.family + " " + entry.area, *_options.search));
}

ExitCode CatalogCommand::refuse(const std::string& problem) {
    _diagnostics.reportProblem(problem);
    return ExitCode::Failure;
}
