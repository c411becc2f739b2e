// A receiver of one transfer.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "testkit/Fixture.h"
#include "transfer/InternetTransfer.h"

namespace mvtest {

class TransferClient {
 public:
  TransferClient() {
    QObject::connect(&transfer, &mv::InternetTransfer::StateChanged, &transfer, [this](int, int state) {
      states.push_back(state);
      if (onState) onState(state);
    });
  }

  void begin(const std::string& url, mv::BodyMode mode = mv::BodyMode::Text) {
    states.clear();
    transfer.Execute(url, "Get", mode);
    EXPECT_TRUE(states.empty()) << "a state from inside Execute";
  }
  bool over() const { return !states.empty() && states.back() >= mv::kError; }
  // The last state: 11 or 12; 0 when none came.
  int run(const std::string& url, mv::BodyMode mode = mv::BodyMode::Text) {
    begin(url, mode);
    return waitFor([this] { return over(); }) ? states.back() : 0;
  }
  std::string body(mv::ChunkType type = mv::ChunkType::Text) {
    std::string all;
    for (auto piece = transfer.GetChunk(1024, type); !piece.empty(); piece = transfer.GetChunk(1024, type))
      all += piece;
    return all;
  }

  mv::InternetTransfer transfer;
  std::vector<int> states;
  std::function<void(int)> onState;
};

}  // namespace mvtest
