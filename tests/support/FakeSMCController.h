#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/telemetry/SMCController.h"

namespace voltaro::testing {

// A controller serving a table of keys over the two-step read. It checks what a real controller
// relies on (selector, open connection, the information echoed back in the second request) and
// records every request.
class FakeSMCController final : public SMCController {
  public:
    struct Key {
        Key(std::string type, std::vector<std::uint8_t> bytes)
            : type(std::move(type)), bytes(std::move(bytes)) {}
        Key withTypeCode(std::uint32_t code) const { return with(&Key::typeCode, code); }
        Key withDataSize(std::uint32_t size) const { return with(&Key::dataSize, size); }
        Key withFirstResult(std::uint8_t result) const { return with(&Key::firstResult, result); }
        Key withSecondResult(std::uint8_t result) const { return with(&Key::secondResult, result); }
        Key failingCalls() const { return with(&Key::callFails, true); }

        std::string type;  // packed as a four-character code
        std::vector<std::uint8_t> bytes;
        // Replaces the packed type, for codes no text packs to.
        std::optional<std::uint32_t> typeCode;
        std::optional<std::uint32_t> dataSize;  // replaces bytes.size() in the first reply
        std::uint8_t firstResult = 0;
        std::uint8_t secondResult = 0;
        bool callFails = false;

      private:
        template <typename Field, typename Value>
        Key with(Field Key::*field, Value value) const {
            Key copy = *this;
            copy.*field = value;
            return copy;
        }
    };
    struct Request {
        std::string key;
        std::uint8_t command;
        friend bool operator==(const Request&, const Request&) = default;
    };

    static constexpr std::uint8_t kKeyNotFound = 0x84;
    static constexpr std::uint8_t kBadArgument = 0x89;

    void setKey(const std::string& name, Key key) { keys_.insert_or_assign(name, std::move(key)); }
    void refuseToOpen(const std::string& serviceClass) { refused_.insert(serviceClass); }
    void allowToOpen(const std::string& serviceClass) { refused_.erase(serviceClass); }

    const std::vector<std::string>& openAttempts() const { return openAttempts_; }
    const std::vector<SMCConnection>& openedConnections() const { return opened_; }
    const std::vector<SMCConnection>& closedConnections() const { return closed_; }
    const std::vector<Request>& requests() const { return requests_; }

    std::optional<SMCConnection> open(std::string_view serviceClass) override;
    bool callStructMethod(SMCConnection connection, std::uint32_t selector,
                          const SMCKeyDataBuffer& input, SMCKeyDataBuffer& output) override;
    void close(SMCConnection connection) override;

  private:
    std::map<std::string, Key> keys_;
    std::set<std::string> refused_;
    std::set<SMCConnection> open_;
    SMCConnection nextConnection_ = 0x1203;
    std::vector<std::string> openAttempts_;
    std::vector<SMCConnection> opened_;
    std::vector<SMCConnection> closed_;
    std::vector<Request> requests_;
};

}  // namespace voltaro::testing
