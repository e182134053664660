#pragma once

#include "core/telemetry/SMCController.h"
#include "platform/macos/IOKitCalls.h"

namespace voltaro::platform {

// The system management controller's IOKit user client. A struct call counts only when IOKit
// reports success and the answer fills the whole 80-byte record: a shorter answer would leave the
// result code and value bytes of the record unwritten.
class IOKitSMCController final : public SMCController {
  public:
    explicit IOKitSMCController(IOKitCalls calls);

    std::optional<SMCConnection> open(std::string_view serviceClass) override;
    bool callStructMethod(SMCConnection connection, std::uint32_t selector,
                          const SMCKeyDataBuffer& input, SMCKeyDataBuffer& output) override;
    void close(SMCConnection connection) override;

  private:
    IOKitCalls calls_;
};

}  // namespace voltaro::platform
