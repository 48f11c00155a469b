#pragma once

#include "TQProjectionExport.h"

#include <functional>
#include <string_view>

/// A reference system as PROJ's database lists it. The texts are UTF-8, empty where the database has none.
struct TQReferenceSystem {
    std::string_view authority; ///< who gave the code, such as "EPSG"
    std::string_view code;      ///< the code, digits with most authorities
    std::string_view name;      ///< such as "RGF93 v1 / Lambert-93"
    std::string_view area;      ///< the area of use in words
    bool isProjected = false;   ///< projected; geographic with two dimensions if not
    bool isDeprecated = false;  ///< withdrawn by its authority
};

/// Lets PROJ look for its database and grids in "PROJ" of the shared directory, if that holds "proj.db": its
/// default context and all contexts made from now on. Building the catalogue does it; a program that makes
/// projections or transformations without the catalogue calls it first.
TQPROJECTION_EXPORT void tq_letPROJSearchSharedDirectory();

/// Goes through the projected and the two-dimensional geographic reference systems of the Earth in PROJ's
/// database, deprecated ones included, in the order in which PROJ lists them. Without a database there are
/// none.
///
/// Asks PROJ through its default context, so one thread at a time may do it.
/// @param visit is given each system; the texts are valid until it returns
TQPROJECTION_EXPORT void
tq_forEachReferenceSystem(const std::function<void(const TQReferenceSystem& system)>& visit);
