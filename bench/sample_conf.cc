#include "bench/sample_conf.h"

#include <cstdlib>

#include "bench/server_root.h"
#include "info_analyze/queue_list.h"
#include "queue/mqpd_conf.h"

namespace ia_bench {
namespace {

std::string QueueName(std::int64_t number) { return "queue-" + std::to_string(number); }

std::string Uri(std::int64_t number) {
  return "net:printer-" + std::to_string(number) + ".example.com/PDLType=kappa2";
}

std::string Content(std::int64_t queues) {
  std::string conf = "# Printer daemon configuration\n";
  for (std::int64_t i = 1; i <= queues; ++i) {
    conf += "<Printer " + QueueName(i) + ">\nDevicePath " + Uri(i) +
            "\nState Idle\nInfo Printer on the second floor\n</Printer>\n";
  }
  return conf;
}

}  // namespace

SampleConf::SampleConf(std::int64_t queues)
    : folder_(ServerRoot::Get().folder() / ("cache-" + std::to_string(queues))),
      last_name_(QueueName(queues)),
      last_uri_(Uri(queues)) {
  ServerRoot::Get().WriteFile("cache-" + std::to_string(queues) + "/MQPD/mqpd.conf",
                              Content(queues));
}

void FindByUri(const SampleConf& conf) {
  char* name = nullptr;
  if (ia::FindQueueOfUri(conf.folder(), conf.last_uri(), &name) != 0) std::abort();
  if (name != conf.last_name()) std::abort();
  std::free(name);
}

void FindByName(const SampleConf& conf) {
  FolderConf* const text = ia::NewConf(conf.folder());
  char* address = nullptr;
  char* protocol = nullptr;
  if (FolderPathForConf_GetAddressAndProtocol(text, conf.last_name().c_str(), &address,
                                              &protocol) != 1) {
    std::abort();
  }
  std::free(address);
  std::free(protocol);
  FolderPathForConf_Terminate(text);
}

void ListQueues(const SampleConf& conf) {
  FolderConf* const text = ia::NewConf(conf.folder());
  int32_t count = 0;
  MqpdQueueList_Terminate(MqpdQueueList_Initialize(text, &count));
  if (count == 0) std::abort();
  FolderPathForConf_Terminate(text);
}

}  // namespace ia_bench
