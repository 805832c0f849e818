#include "tests/integration/sample_setting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/integration/call_faults.h"
#include "tests/support/build_folders.h"
#include "tests/support/print_queues.h"

namespace ia_test {

const char kPpd[] = R"(*PPD-Adobe: "4.3"
*QVAnlz_DriverName: "RA-H2"
*QV_Prot_MediaType: "Plain:1,Thick:2,Plain:3"
*QVAnlz_SlotMediaInfo: "Cas1:QVCas1MediaType"
*QVAnlz_InputTray: "Cas1:101"
*QVAnlz_InputTray_2: "Cas2:102"
*QVAnlz_FinisherName: "Staple Finisher:STFIN"
*QVAnlz_SrcOption: "Cas34:122"
*QVAnlz_FuncVer_UI_310: "QVSecureErase:True"
*QVAnlz_FuncVer_CommonFlag_200: "Proof,Quota"
*%QVUIValue: *QVColorMode(mono)
*QVTwin: "1"
*QVtwin: "2"
*QVTwin: "3"
*QVtwIn: "4"
*QVOther: "5"
*QVTwi: "6"
*OpenUI *QVSpecID/Specification: PickOne
*DefaultQVSpecID: 0100
*QVSpecID 0100/One: ""
*QVSpecID 0120/Two: ""
*QVSpecID 0200/Three: ""
*CloseUI: *QVSpecID
*OpenUI *QVPlatformVersion/Platform: PickOne
*QVPlatformVersion 0002/Two: ""
*CloseUI: *QVPlatformVersion
)";

const char kPpdTable[] = R"(QVValueListPlatformVersion=0002
QVValueListSpecID=0100,0120,0200
QVOther=5
QVtwIn=4
QVtwin=3
QVTwin=3
QVColorMode=mono
QVAnlz_FuncVer_CommonFlag_200=Proof,Quota
QVAnlz_FuncVer_UI_310=QVSecureErase:True
QVAnlz_SrcOption=Cas34:122
QVAnlz_FinisherName=Staple Finisher:STFIN
QVAnlz_InputTray_2=Cas2:102
QVAnlz_InputTray=Cas1:101
QVAnlz_SlotMediaInfo=Cas1:QVCas1MediaType
QV_Prot_MediaType=Plain:1,Thick:2,Plain:3
QVAnlz_DriverName=RA-H2
)";

namespace {

struct Document {
  const char* file;
  const char* content;
};

const Document kDocuments[] = {
    {"Accessories.xml", R"(<long key="hd">1</long><long key="memory">512</long>)"},
    {"Functions.xml", R"(
        <long key="duplex">1</long>
        <long key="management">1</long>
        <long key="trustprint">0</long>
        <long key="securedprint">1</long>
        <string key="authentication_user">mode4</string>
        <string key="authentication_job_password">mode2</string>
        <string key="authentication_f_code">mode3</string>
        <long key="must_authentication">0</long>)"},
    {"Specid.xml", R"(
        <long key="version">291</long>
        <string key="platform_name">ncpp</string>
        <long key="platform_version">3</long>)"},
    {"Finisher_list.xml", R"(
        <dict key="list"><long key="type">15</long><string key="name">Staple Finisher</string>
          <long key="binnum">2</long>
          <array key="func"><string>staple</string><string>punch</string>
            <string>folding</string><string>inserter</string></array>
          <array key="detail_func"><string>punching_2_holes</string></array></dict>
        <dict key="list"><long key="type">2</long></dict>)"},
    {"Bin_list.xml", R"(
        <dict key="list"><long key="number">3</long>
          <array key="alias"><long>101</long></array></dict>)"},
    {"Tray_list.xml", R"(
        <dict key="list"><long key="type">2</long><array key="alias"><long>101</long></array>
          <long key="capacity">550</long><long key="medium_type">2</long></dict>
        <dict key="list"><long key="type">3</long><array key="alias"><long>122</long></array></dict>
        <dict key="list"><long key="type">6</long>
          <array key="alias"><long>161</long></array></dict>)"},
    {"Resolutions.xml", R"(<long key="resolution_600">1</long>)"},
    {"Fax_line_list.xml", R"(
        <dict key="list"><long key="id">1</long><long key="type">2</long>
          <long key="id_support">19</long>
          <array key="communication_mode"><long>17</long></array></dict>)"},
    {"Devicename.xml", R"(<string key="devicename">HZL-A</string>)"},
};

// A text that must not be missing, but may be where the library is wrong.
std::string Text(const char* text) { return text != nullptr ? text : "(null)"; }

}  // namespace

std::string Shown(const OptTable* table) {
  std::string shown;
  for (const OptTable* node = table; node != nullptr; node = node->next) {
    shown += Text(node->key) + "=" + Text(node->value) + "\n";
  }
  return shown;
}

std::string Shown(const FlagInfo* store) {
  if (store == nullptr) return "(none)";
  std::string shown;
  for (int32_t i = 0; i < store->count; ++i) {
    shown += Text(store->entries[i].name) + "=" + Text(store->entries[i].value) + "\n";
  }
  return shown;
}

std::string Take(char* text) {
  if (text == nullptr) return "(none)";
  std::string taken(text);
  CallFaults::Instance().Release(text);
  return taken;
}

CallersList::CallersList() { info_common_optlist_additem_front(&head_, "Start", "0"); }

const SampleSetting& SampleSetting::Get() {
  static const SampleSetting setting;
  return setting;
}

SampleSetting::SampleSetting() {
  PrintQueues::Get().Add(kQueue, kPpd);
  for (const auto& [file, content] : kDocuments) {
    documents_.Write(file, "<document version=\"1\">" + std::string(content) + "</document>\n");
  }
  CallFaults::Instance();  // from here on what the library allocates is known
  bidi_ = Bidi_Create(ia_test::kReferenceDriver);
  EXPECT_NE(bidi_, nullptr) << ia_test::kReferenceDriver;
  CallFaults::Instance().Track("libmqpd_util.so");
}

}  // namespace ia_test
