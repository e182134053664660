#include "core/controls/LaunchAtLoginController.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "support/FakeLoginItemService.h"

namespace voltaro {
namespace {

using testing::FakeLoginItemService;

struct Fixture {
    explicit Fixture(LoginItemStatus initial = LoginItemStatus::notRegistered) {
        auto owned = std::make_unique<FakeLoginItemService>();
        owned->currentStatus = initial;
        service = owned.get();
        controller.emplace(std::move(owned));
    }

    FakeLoginItemService* service = nullptr;
    std::optional<LaunchAtLoginController> controller;
};

TEST(LaunchAtLoginControllerTest, ANewControllerShowsTheServicesStatus) {
    const std::tuple<LoginItemStatus, bool, bool> cases[] = {
        {LoginItemStatus::notRegistered, false, false},
        {LoginItemStatus::enabled, true, false},
        {LoginItemStatus::requiresApproval, true, true},
        {LoginItemStatus::notFound, false, false},
    };
    for (const auto& [status, isEnabled, requiresApproval] : cases) {
        Fixture fixture(status);
        EXPECT_EQ(fixture.controller->isEnabled().get(), isEnabled) << static_cast<int>(status);
        EXPECT_EQ(fixture.controller->requiresApproval().get(), requiresApproval);
        EXPECT_TRUE(fixture.service->calls.empty());
    }
}

TEST(LaunchAtLoginControllerTest, AFailedChangeLeavesTheErrorAndTheStatusReportedAfterIt) {
    Fixture fixture;
    fixture.service->nextFailure = "Could not write /home/u/.config/autostart/voltaro.desktop";
    fixture.service->statusAfterChange = LoginItemStatus::requiresApproval;
    std::vector<bool> changing;
    fixture.controller->isChanging().subscribe([&](bool value) { changing.push_back(value); });
    fixture.service->duringChange = [&] { EXPECT_TRUE(fixture.controller->isChanging().get()); };

    fixture.controller->setEnabled(true);

    EXPECT_EQ(fixture.service->calls, std::vector<std::string>{"register"});
    EXPECT_EQ(fixture.controller->errorMessage().get(),
              "Could not write /home/u/.config/autostart/voltaro.desktop");
    EXPECT_EQ(changing, (std::vector<bool>{true, false}));
    EXPECT_TRUE(fixture.controller->isEnabled().get());
    EXPECT_TRUE(fixture.controller->requiresApproval().get());
}

TEST(LaunchAtLoginControllerTest, OnlyTheNextChangeClearsAnError) {
    Fixture fixture(LoginItemStatus::enabled);
    fixture.service->nextFailure = "Permission denied";
    fixture.controller->setEnabled(false);
    fixture.controller->refresh();
    EXPECT_EQ(fixture.controller->errorMessage().get(), "Permission denied");
    EXPECT_TRUE(fixture.controller->isEnabled().get());

    fixture.service->statusAfterChange = LoginItemStatus::notRegistered;
    fixture.service->duringChange = [&] {
        EXPECT_EQ(fixture.controller->errorMessage().get(), std::nullopt);
    };
    fixture.controller->setEnabled(false);
    EXPECT_EQ(fixture.service->calls, (std::vector<std::string>{"unregister", "unregister"}));
    EXPECT_EQ(fixture.controller->errorMessage().get(), std::nullopt);
    EXPECT_FALSE(fixture.controller->isEnabled().get());
}

TEST(LaunchAtLoginControllerTest, RefreshPicksUpAChangeMadeInTheSystemsSettings) {
    Fixture fixture(LoginItemStatus::requiresApproval);
    std::vector<bool> approval;
    fixture.controller->requiresApproval().subscribe(
        [&](bool value) { approval.push_back(value); });

    fixture.service->currentStatus = LoginItemStatus::enabled;
    fixture.controller->refresh();
    fixture.controller->refresh();

    EXPECT_EQ(approval, std::vector<bool>{false}) << "told once, only on the change";
    EXPECT_TRUE(fixture.controller->isEnabled().get());
}

}  // namespace
}  // namespace voltaro
