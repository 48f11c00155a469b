#pragma once

#include <memory>
#include <proj.h>
#include <string>
#include <vector>

/// A reference system as PROJ itself lists it.
struct ListedSystem {
    std::string authority;
    std::string code;
    std::string name;
    std::string area;
    bool isProjected = false;
    bool isDeprecated = false;
};

/// The projected and two-dimensional geographic systems of the Earth in PROJ's database, asked for directly.
inline std::vector<ListedSystem> systemsListedByProj() {
    const std::unique_ptr<PROJ_CRS_LIST_PARAMETERS, decltype(&proj_get_crs_list_parameters_destroy)>
        parameters(proj_get_crs_list_parameters_create(), &proj_get_crs_list_parameters_destroy);
    const PJ_TYPE types[] = {PJ_TYPE_PROJECTED_CRS, PJ_TYPE_GEOGRAPHIC_2D_CRS};
    parameters->types = types;
    parameters->typesCount = 2;
    parameters->allow_deprecated = 1;
    parameters->celestial_body_name = "Earth";
    int count = 0;
    const std::unique_ptr<PROJ_CRS_INFO*, decltype(&proj_crs_info_list_destroy)> list(
        proj_get_crs_info_list_from_database(nullptr, nullptr, parameters.get(), &count),
        &proj_crs_info_list_destroy);
    std::vector<ListedSystem> systems;
    for (int index = 0; index < count; ++index) {
        const PROJ_CRS_INFO& info = *list.get()[index];
        systems.push_back({info.auth_name, info.code, info.name, info.area_name ? info.area_name : "",
                           info.type == PJ_TYPE_PROJECTED_CRS, info.deprecated != 0});
    }
    return systems;
}
