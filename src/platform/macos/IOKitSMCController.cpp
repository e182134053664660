#include "platform/macos/IOKitSMCController.h"

#include <string>

namespace voltaro::platform {

IOKitSMCController::IOKitSMCController(IOKitCalls calls) : calls_(std::move(calls)) {}

std::optional<SMCConnection> IOKitSMCController::open(std::string_view serviceClass) {
    const CFObject matching = calls_.serviceMatching(std::string(serviceClass).c_str());
    if (matching == nullptr) {
        return std::nullopt;
    }
    // The lookup consumes the matching dictionary.
    const MachPort service = calls_.serviceGetMatchingService(matching);
    if (service == 0) {
        return std::nullopt;
    }
    MachPort connection = 0;
    const KernReturn opened = calls_.serviceOpen(service, calls_.taskSelf(), 0, &connection);
    // The connection keeps its own reference to the service.
    calls_.objectRelease(service);
    if (opened != kKernSuccess || connection == 0) {
        return std::nullopt;
    }
    return connection;
}

bool IOKitSMCController::callStructMethod(SMCConnection connection, std::uint32_t selector,
                                          const SMCKeyDataBuffer& input, SMCKeyDataBuffer& output) {
    std::size_t outputSize = output.size();
    const KernReturn called = calls_.connectCallStructMethod(
        connection, selector, input.data(), input.size(), output.data(), &outputSize);
    return called == kKernSuccess && outputSize == output.size();
}

void IOKitSMCController::close(SMCConnection connection) {
    calls_.serviceClose(connection);
}

}  // namespace voltaro::platform
