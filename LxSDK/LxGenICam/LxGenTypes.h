#pragma once

#include <cstdint>

/// The kinds of features (GenApi interface types). Any number can travel in these enumerations.
enum LxGenType : uint32_t
{
    LxGenTypeInteger = 0,
    LxGenTypeEnum = 1,
    LxGenTypeBoolean = 2,
    LxGenTypeString = 3,
    LxGenTypeCommand = 4,
    LxGenTypeFloat = 5,
    LxGenTypeRegister = 6,
    LxGenTypeUndefined = 999,
};

/// For whom a feature is meant (GenApi Visibility). A level includes the lower ones.
enum LxGenVisibility : uint32_t
{
    LxGenVisibilityBeginner = 0,
    LxGenVisibilityExpert = 1,
    LxGenVisibilityGuru = 2,
    LxGenVisibilityInvisible = 3,
    LxGenVisibilityUndefined = 999,
};

/// Whether a feature is one of the standard feature names (GenApi NameSpace).
enum LxGenNameSpace : uint32_t
{
    LxGenNameSpaceStandard = 0,
    LxGenNameSpaceCustom = 1,
    LxGenNameSpaceUndefined = 999,
};

/// How a number is best shown (GenApi Representation).
enum LxGenRepresentation : int
{
    LxGenRepresentationLinear = 0,
    LxGenRepresentationLogarithmic = 1,
    LxGenRepresentationBoolean = 2,
    LxGenRepresentationPureNumber = 3,
    LxGenRepresentationHexNumber = 4,
    LxGenRepresentationIPV4Address = 5,
    LxGenRepresentationMACAddress = 6,
};
