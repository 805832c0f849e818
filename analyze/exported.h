// Tying a record to the exported function that it describes.
#ifndef ANALYZE_EXPORTED_H_
#define ANALYZE_EXPORTED_H_

// The fields `name` and `function` of a record, so that no function goes by the name of another.
#define IA_EXPORTED(exported) .name = #exported, .function = exported

#endif  // ANALYZE_EXPORTED_H_
