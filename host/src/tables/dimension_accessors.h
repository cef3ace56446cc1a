#pragma once

/// The variables that styles and dimensions have a getter and a setter for: type, getter, setter,
/// group code.
#define KORRA_DIMENSION_ACCESSORS(ACCESSOR)                                                        \
    ACCESSOR(int, dimdec, setDimdec, 271)                                                          \
    ACCESSOR(int, dimadec, setDimadec, 179)                                                        \
    ACCESSOR(int, dimtdec, setDimtdec, 272)                                                        \
    ACCESSOR(bool, dimtix, setDimtix, 174)                                                         \
    ACCESSOR(bool, dimtoh, setDimtoh, 74)                                                          \
    ACCESSOR(bool, dimtih, setDimtih, 73)                                                          \
    ACCESSOR(bool, dimtofl, setDimtofl, 172)                                                       \
    ACCESSOR(int, dimatfit, setDimatfit, 289)                                                      \
    ACCESSOR(double, dimgap, setDimgap, 147)                                                       \
    ACCESSOR(int, dimtad, setDimtad, 77)                                                           \
    ACCESSOR(double, dimtvp, setDimtvp, 145)                                                       \
    ACCESSOR(bool, dimse1, setDimse1, 75)                                                          \
    ACCESSOR(bool, dimse2, setDimse2, 76)                                                          \
    ACCESSOR(bool, dimsd1, setDimsd1, 281)                                                         \
    ACCESSOR(bool, dimsd2, setDimsd2, 282)                                                         \
    ACCESSOR(int, dimjust, setDimjust, 280)                                                        \
    ACCESSOR(double, dimlfac, setDimlfac, 144)                                                     \
    ACCESSOR(double, dimscale, setDimscale, 40)

/// Variables that styles alone have accessors for.
#define KORRA_STYLE_ACCESSORS(ACCESSOR)                                                            \
    ACCESSOR(double, dimasz, setDimasz, 41)                                                        \
    ACCESSOR(double, dimtxt, setDimtxt, 140)                                                       \
    ACCESSOR(double, dimtfac, setDimtfac, 146)                                                     \
    ACCESSOR(double, dimdli, setDimdli, 43)                                                        \
    ACCESSOR(double, dimexe, setDimexe, 44)                                                        \
    ACCESSOR(double, dimexo, setDimexo, 42)                                                        \
    ACCESSOR(int, dimaunit, setDimaunit, 275)                                                      \
    ACCESSOR(int, dimtolj, setDimtolj, 283)

/// Colours of styles: getter, setter, group code.
#define KORRA_STYLE_COLORS(ACCESSOR)                                                               \
    ACCESSOR(dimclrd, setDimclrd, 176)                                                             \
    ACCESSOR(dimclre, setDimclre, 177)                                                             \
    ACCESSOR(dimclrt, setDimclrt, 178)
