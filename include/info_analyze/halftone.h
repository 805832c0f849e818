/** @file
 *  Reads a job's halftone and resolution from an option table, and converts them to the printer's
 *  codes. */
#ifndef INFO_ANALYZE_HALFTONE_H_
#define INFO_ANALYZE_HALFTONE_H_

#include <stdint.h>

#include "info_analyze/export.h"
#include "info_analyze/option_table.h"

IA_BEGIN_DECLS

/** Halftone types, with the option values that name them. */
enum {
  IA_HALFTONE_NONE = 0,            /**< "None" */
  IA_HALFTONE_GRADATION = 1,       /**< "gradation" */
  IA_HALFTONE_RESOLUTION = 2,      /**< "resolution" */
  IA_HALFTONE_HIGH_RESOLUTION = 3, /**< "highresolution" */
  IA_HALFTONE_COLOR_TONE = 4,      /**< "colortone" */
  IA_HALFTONE_ERROR_DIFFUSION = 5  /**< "errdiffusion" */
};

/** Reads the job's three halftone values.
 *
 *  A job is monochrome when "QVColorMode" is absent or begins with "mono", ignoring case; otherwise
 *  it is colour. "QVColorHalftone" (monochrome: "QVHalftone") names the halftone by its prefix,
 *  ignoring case. "None", "resolution", "highresolution", "gradation", "colortone" and
 *  "errdiffusion" give all three values the type of that name. "pattern1" to "pattern9" select the
 *  three digits in "QVCHTPattern1" to "QVCHTPattern9" (monochrome: "QVHTPattern1" to
 *  "QVHTPattern9"); the last digit is the first value. The digits are not checked: each value is
 *  the signed byte minus '0', modulo 2^32. Bytes beyond the end of the text count as NUL.
 *
 *  @param options  option table, not modified
 *  @param first    receives the first value
 *  @param second   receives the second value
 *  @param third    receives the third value
 *  @return 0, with three zeros for an absent or unknown halftone or an absent pattern; -1 for a
 *          NULL argument, with nothing written */
IA_EXPORT int32_t analyze_common_get_halftone(const OptTable* options, uint32_t* first,
                                              uint32_t* second, uint32_t* third) IA_NOEXCEPT;

/** Reads the job's resolution from "Resolution": "600x600dpi", "1200x600dpi", "1200x1200dpi", "600"
 *  or "1200", ignoring case. Without one of these it is 600 by 600.
 *  @param options  option table, not modified
 *  @param x_dpi    receives the horizontal resolution in dots per inch
 *  @param y_dpi    receives the vertical resolution in dots per inch
 *  @return 0; -1 for a NULL argument, with nothing written */
IA_EXPORT int32_t analyze_common_get_resolution(const OptTable* options, uint32_t* x_dpi,
                                                uint32_t* y_dpi) IA_NOEXCEPT;

/** Converts a halftone type to the printer's bit for it.
 *  @param type  halftone type
 *  @return 0x40000 for 1, 0x10000 for 2, 0x20000 for 3, 0x80000 for 4, 0x100000 for 5, else 0 */
IA_EXPORT uint32_t analyze_common_convertHalftoneTypePPDtoBidi(uint32_t type) IA_NOEXCEPT;

/** Converts a density characteristic to the printer's number for it.
 *  @param value  density characteristic
 *  @return 2 for 0, 3 for 1, 1 for 2, else 0 */
IA_EXPORT uint32_t analyze_common_convertDensityCharCMMtoBidi(uint32_t value) IA_NOEXCEPT;

IA_END_DECLS

#endif /* INFO_ANALYZE_HALFTONE_H_ */
