#include "proj/TQReferenceSystem.h"

#include "support/TQPath.h"
#include "support/TQSharedDirectory.h"

#include <array>
#include <filesystem>
#include <memory>
#include <proj.h>
#include <string>
#include <system_error>

namespace {

pj_ctx* const defaultContext = nullptr;

/// Keeps PROJ from writing to the error output that there is no database.
class SilentDefaultContext {
  public:
    SilentDefaultContext() : _levelBefore(proj_log_level(defaultContext, PJ_LOG_NONE)) {}
    SilentDefaultContext(const SilentDefaultContext&) = delete;
    SilentDefaultContext& operator=(const SilentDefaultContext&) = delete;
    ~SilentDefaultContext() { proj_log_level(defaultContext, _levelBefore); }

  private:
    PJ_LOG_LEVEL _levelBefore;
};

struct SystemListRelease {
    void operator()(PROJ_CRS_INFO** list) const { proj_crs_info_list_destroy(list); }
};

/// PROJ's list and its owner; ends with a null pointer.
using SystemList = std::unique_ptr<PROJ_CRS_INFO*, SystemListRelease>;

/// Null when PROJ has no database.
SystemList newSystemList() {
    const SilentDefaultContext silent;
    const std::unique_ptr<PROJ_CRS_LIST_PARAMETERS, decltype(&proj_get_crs_list_parameters_destroy)> wanted(
        proj_get_crs_list_parameters_create(), &proj_get_crs_list_parameters_destroy);
    constexpr std::array types{PJ_TYPE_PROJECTED_CRS, PJ_TYPE_GEOGRAPHIC_2D_CRS};
    wanted->types = types.data();
    wanted->typesCount = types.size();
    wanted->allow_deprecated = 1;
    wanted->celestial_body_name = "Earth";
    constexpr const char* anyAuthority = nullptr;
    int count = 0;
    return SystemList(
        proj_get_crs_info_list_from_database(defaultContext, anyAuthority, wanted.get(), &count));
}

std::string_view viewOf(const char* textOrNull) {
    return textOrNull != nullptr ? std::string_view(textOrNull) : std::string_view();
}

} // namespace

// A directory without the database would keep PROJ from finding its own.
void tq_letPROJSearchSharedDirectory() {
    const TQString directory = tq_createPath(TQGetApplicationSharedDirectory(), TQString("PROJ"));
    std::error_code error;
    if (std::filesystem::exists(tq_filesystemPath(tq_createPath(directory, TQString("proj.db"))), error)) {
        const std::string utf8 = directory.utf8();
        const char* const path = utf8.c_str();
        proj_context_set_search_paths(defaultContext, 1, &path);
    }
}

void tq_forEachReferenceSystem(const std::function<void(const TQReferenceSystem& system)>& visit) {
    const SystemList list = newSystemList();
    if (!list) {
        return;
    }
    for (PROJ_CRS_INFO* const* entry = list.get(); *entry != nullptr; ++entry) {
        const PROJ_CRS_INFO& info = **entry;
        visit({.authority = viewOf(info.auth_name),
               .code = viewOf(info.code),
               .name = viewOf(info.name),
               .area = viewOf(info.area_name),
               .isProjected = info.type == PJ_TYPE_PROJECTED_CRS,
               .isDeprecated = info.deprecated != 0});
    }
}
