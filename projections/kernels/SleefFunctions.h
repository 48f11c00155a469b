#pragma once

/// The functions of SLEEF that the formulas call, as static functions of a class of lanes: those within one
/// unit in the last place that give the same bits for every number of lanes ("finz").
/// @param lanes SLEEF's name of the number of lanes: d1, d4, d8
/// @param set SLEEF's name of the instruction set
#define TQ_SLEEF_FUNCTIONS(lanes, set)                                                                       \
    static Numbers asin(Numbers a) { return Sleef_finz_asin##lanes##_u10##set(a); }                          \
    static Numbers atan(Numbers a) { return Sleef_finz_atan##lanes##_u10##set(a); }                          \
    static Numbers atan2(Numbers a, Numbers b) { return Sleef_finz_atan2##lanes##_u10##set(a, b); }          \
    static Numbers exp(Numbers a) { return Sleef_finz_exp##lanes##_u10##set(a); }                            \
    static Numbers log(Numbers a) { return Sleef_finz_log##lanes##_u10##set(a); }                            \
    static Numbers log1p(Numbers a) { return Sleef_finz_log1p##lanes##_u10##set(a); }                        \
    static Numbers sin(Numbers a) { return Sleef_finz_sin##lanes##_u10##set(a); }                            \
    static Numbers sinh(Numbers a) { return Sleef_finz_sinh##lanes##_u10##set(a); }                          \
    static Numbers tanh(Numbers a) { return Sleef_finz_tanh##lanes##_u10##set(a); }                          \
    static auto sincos(Numbers a) { return Sleef_finz_sincos##lanes##_u10##set(a); }
