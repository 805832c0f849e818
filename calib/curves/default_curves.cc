// The default calibration curves. The build makes the numbers from the .csv files in this folder.
#include <cstdint>

#include "info_analyze/calibration.h"

const uint16_t LARCH_Def_Calib[IA_CALIB_TABLE_VALUES] = {
#include "calib/curves/LARCH_Def_Calib.inc"
};

const uint16_t Linden_Def_Calib_2bit[IA_CALIB_TABLE_VALUES] = {
#include "calib/curves/Linden_Def_Calib_2bit.inc"
};

const uint16_t Linden_Def_Calib_4bit[IA_CALIB_TABLE_VALUES] = {
#include "calib/curves/Linden_Def_Calib_4bit.inc"
};

const uint16_t PinePoplar_Def_Calib_2bit[IA_CALIB_TABLE_VALUES] = {
#include "calib/curves/PinePoplar_Def_Calib_2bit.inc"
};

const uint16_t PinePoplar_Def_Calib_4bit[IA_CALIB_TABLE_VALUES] = {
#include "calib/curves/PinePoplar_Def_Calib_4bit.inc"
};
