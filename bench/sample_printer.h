// A printer with 8 trays, 4 finishers, 6 bins and 4 fax lines: the lines of its PPD that an
// analyser reads, and what its documents say, as data that a communication library can answer from
// at once.
#ifndef BENCH_SAMPLE_PRINTER_H_
#define BENCH_SAMPLE_PRINTER_H_

#include <array>
#include <cstdint>
#include <span>
#include <variant>

namespace ia_bench {

using Numbers = std::span<const std::int32_t>;
using Words = std::span<const char* const>;

struct Field {
  const char* key;
  std::variant<std::int32_t, const char*, Numbers, Words> value;
};

using Fields = std::span<const Field>;

struct SampleDocument {
  const char* file;
  Fields fields;
  std::span<const Fields> list;
};

inline constexpr char kAnalyzerLines[] =
    "*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n"
    "*QV_Prot_MediaType: \"PlainPaper:0,Heavy1:2,Heavy2:3,Recycled:4,Labels:7\"\n"
    "*QVAnlz_SlotMediaInfo: \"Manual:QVManualMediaType,Cas1:QVCas1MediaType,Cas2:QVCas2MediaType,"
    "Cas3:QVCas3MediaType,Cas4:QVCas4MediaType,Cas5:QVCas5MediaType,Cas6:QVCas6MediaType,"
    "Cas7:QVCas7MediaType\"\n"
    "*QVAnlz_InputTray: \"Manual:7,Cas1:101,Cas2:102,Cas3:121,Cas4:122,Cas5:123,Cas6:161,"
    "Cas7:162\"\n"
    "*QVAnlz_FinisherName: \"Vorel Booklet Finisher-W1:BKFINW1,Vorel Inner Shift "
    "Sorter-D1:INSHFTD1\"\n"
    "*QVAnlz_SrcOption: \"Cas34:122,PaperDeck:161\"\n"
    "*QVAnlz_FuncVer_UI_310: \"QVEnableSecureErase:True,QVEnableUniversalPrint:True\"\n"
    "*QVAnlz_FuncVer_CommonFlag_310: \"ProofPrint,QuotaCheck\"\n"
    "*OpenUI *QVSpecID/Specification: PickOne\n"
    "*QVSpecID 0100/One: \"\"\n"
    "*QVSpecID 0200/Two: \"\"\n"
    "*CloseUI: *QVSpecID\n"
    "*OpenUI *QVPlatformVersion/Platform: PickOne\n"
    "*QVPlatformVersion 0100/One: \"\"\n"
    "*QVPlatformVersion 0200/Two: \"\"\n"
    "*CloseUI: *QVPlatformVersion\n";

namespace sample {

inline constexpr auto kAccessories = std::to_array<Field>({{"hd", 1}, {"memory", 4096}});
inline constexpr auto kFunctions = std::to_array<Field>({{"duplex", 1},
                                                         {"management", 1},
                                                         {"trustprint", 1},
                                                         {"securedprint", 1},
                                                         {"authentication_user", "mode2"},
                                                         {"authentication_job_password", "mode2"},
                                                         {"authentication_f_code", "mode1"},
                                                         {"must_authentication", 0}});
inline constexpr auto kSpecId = std::to_array<Field>(
    {{"version", 0x120}, {"platform_name", "ncpp"}, {"platform_version", 0x200}});
inline constexpr auto kResolutions =
    std::to_array<Field>({{"resolution_300", 0}, {"resolution_600", 1}, {"resolution_1200", 1}});
inline constexpr auto kDeviceName = std::to_array<Field>({{"devicename", "HZL-A"}});

inline constexpr auto kFinisherWords =
    std::to_array<const char*>({"staple", "punch", "folding", "trimming", "inserter"});
inline constexpr auto kFinisherDetails = std::to_array<const char*>(
    {"punching_2_holes", "punching_French_4_holes", "punching_multiple_holes"});
inline constexpr auto kBooklet = std::to_array<Field>({{"type", 12},
                                                       {"name", "Vorel Booklet Finisher-W1"},
                                                       {"binnum", 3},
                                                       {"func", Words(kFinisherWords)},
                                                       {"detail_func", Words(kFinisherDetails)}});
inline constexpr auto kSorter =
    std::to_array<Field>({{"type", 1}, {"name", "Vorel Inner Shift Sorter-D1"}, {"binnum", 2}});
inline constexpr auto kStacker =
    std::to_array<Field>({{"type", 15}, {"name", "Vorel Stacker-A1"}, {"binnum", 1}});
inline constexpr auto kFinishers = std::to_array<Fields>({kBooklet, kSorter, kStacker, kStacker});

template <std::int32_t kNumber, std::int32_t kAlias>
struct Bin {
  static constexpr auto kAliases = std::to_array<std::int32_t>({kAlias});
  static constexpr auto kFields =
      std::to_array<Field>({{"number", kNumber}, {"alias", Numbers(kAliases)}});
};
inline constexpr auto kBins =
    std::to_array<Fields>({Bin<1, 119>::kFields, Bin<2, 100>::kFields, Bin<3, 101>::kFields,
                           Bin<4, 102>::kFields, Bin<5, 121>::kFields, Bin<6, 122>::kFields});

template <std::int32_t kType, std::int32_t kAlias, std::int32_t kMedium>
struct Tray {
  static constexpr auto kAliases = std::to_array<std::int32_t>({kAlias});
  static constexpr auto kFields = std::to_array<Field>(
      {{"type", kType}, {"alias", Numbers(kAliases)}, {"capacity", 550}, {"medium_type", kMedium}});
};
inline constexpr auto kTrays = std::to_array<Fields>(
    {Tray<1, 7, 0>::kFields, Tray<2, 101, 0>::kFields, Tray<2, 102, 2>::kFields,
     Tray<3, 121, 3>::kFields, Tray<3, 122, 4>::kFields, Tray<3, 123, 7>::kFields,
     Tray<6, 161, 0>::kFields, Tray<6, 162, 9>::kFields});

template <std::int32_t kId, std::int32_t kType, std::int32_t kMode>
struct FaxLine {
  static constexpr auto kModes = std::to_array<std::int32_t>({kMode, 1, 2});
  static constexpr auto kFields = std::to_array<Field>({{"id", kId},
                                                        {"type", kType},
                                                        {"id_support", 17 + kId},
                                                        {"communication_mode", Numbers(kModes)}});
};
inline constexpr auto kFaxLines =
    std::to_array<Fields>({FaxLine<1, 1, 17>::kFields, FaxLine<2, 1, 18>::kFields,
                           FaxLine<3, 2, 16>::kFields, FaxLine<4, 3, 69>::kFields});

}  // namespace sample

inline constexpr auto kDocuments = std::to_array<SampleDocument>({
    {"Accessories.xml", sample::kAccessories, {}},
    {"Functions.xml", sample::kFunctions, {}},
    {"Specid.xml", sample::kSpecId, {}},
    {"Finisher_list.xml", {}, sample::kFinishers},
    {"Bin_list.xml", {}, sample::kBins},
    {"Tray_list.xml", {}, sample::kTrays},
    {"Resolutions.xml", sample::kResolutions, {}},
    {"Fax_line_list.xml", {}, sample::kFaxLines},
    {"Devicename.xml", sample::kDeviceName, {}},
});

}  // namespace ia_bench

#endif  // BENCH_SAMPLE_PRINTER_H_
