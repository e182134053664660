#include "platform/linux/XdgAutostartLoginItem.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "platform/Platform.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"

namespace voltaro::platform {
namespace {

std::string contents(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

class XdgAutostartLoginItemTest : public ::testing::Test {
  protected:
    testing::TemporaryDirectory home_;
    std::filesystem::path configHome_ = home_.path() / "config";
    std::filesystem::path entry_ = configHome_ / "autostart" / "voltaro.desktop";
    XdgAutostartLoginItem item_{configHome_, "/opt/voltaro/bin/voltaro"};
};

TEST_F(XdgAutostartLoginItemTest, RegistersAnEntryThatStartsThisProgramAndRemovesIt) {
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);

    EXPECT_EQ(item_.registerItem(), std::nullopt);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    EXPECT_EQ(contents(entry_),
              "[Desktop Entry]\nType=Application\nName=Voltaro\nExec=/opt/voltaro/bin/voltaro\n"
              "Terminal=false\n");
    EXPECT_EQ(namesIn(entry_.parent_path()), std::vector<std::string>{"voltaro.desktop"});
    EXPECT_EQ(item_.registerItem(), std::nullopt) << "registering again just rewrites it";

    EXPECT_EQ(item_.unregisterItem(), std::nullopt);
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(std::filesystem::exists(entry_));
    EXPECT_EQ(item_.unregisterItem(), std::nullopt) << "already gone is fine";
}

TEST_F(XdgAutostartLoginItemTest, ReadsWhetherTheSessionWouldStartItAndRegisteringOverridesIt) {
    const std::pair<std::string, LoginItemStatus> cases[] = {
        {"[Desktop Entry]\nExec=voltaro\n", LoginItemStatus::enabled},
        {"[Desktop Entry]\nExec=voltaro\nHidden=true\n", LoginItemStatus::notRegistered},
        {"# hidden by the session\n[Desktop Entry]\n Hidden = true \n",
         LoginItemStatus::notRegistered},
        {"[Desktop Entry]\nHidden=false\n", LoginItemStatus::enabled},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n", LoginItemStatus::notRegistered},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=true\n", LoginItemStatus::enabled},
        {"[Desktop Entry]\nExec=voltaro\n[Desktop Action quit]\nHidden=true\n",
         LoginItemStatus::enabled},
        {"", LoginItemStatus::notRegistered},
        {"Exec=voltaro\n", LoginItemStatus::notRegistered},  // no entry group: starts nothing
    };
    for (const auto& [entry, expected] : cases) {
        home_.write(entry_.lexically_relative(home_.path()), entry);
        EXPECT_EQ(item_.status(), expected) << entry;
    }
    // Registering over an entry the session hides enables it.
    home_.write(entry_.lexically_relative(home_.path()), "[Desktop Entry]\nHidden=true\n");
    EXPECT_EQ(item_.registerItem(), std::nullopt);
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
}

TEST_F(XdgAutostartLoginItemTest, AFolderThatCannotBeCreatedIsReported) {
    home_.write("config", "a file where the folder should be");
    EXPECT_EQ(item_.registerItem(),
              "Could not create " + (configHome_ / "autostart").string() + ": Not a directory");
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item_.unregisterItem(), std::nullopt) << "nothing there to remove";
}

TEST_F(XdgAutostartLoginItemTest, AnEntryThatCannotBeReplacedIsReportedAndLeavesNoDebris) {
    std::filesystem::create_directories(entry_ / "occupied");
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item_.registerItem(), "Could not write " + entry_.string() + ": Is a directory");
    EXPECT_EQ(item_.unregisterItem(), "Could not remove " + entry_.string() + ": Is a directory");
    EXPECT_EQ(namesIn(entry_.parent_path()), std::vector<std::string>{"voltaro.desktop"});
}

TEST_F(XdgAutostartLoginItemTest, WithoutAHomeEveryChangeFails) {
    XdgAutostartLoginItem homeless(std::nullopt, "/usr/bin/voltaro");
    EXPECT_EQ(homeless.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(homeless.registerItem(), "Could not find the home folder");
    EXPECT_EQ(homeless.unregisterItem(), "Could not find the home folder");
}

TEST(XdgAutostartEntryTest, QuotesAndEscapesTheProgramPath) {
    const auto exec = [](std::string_view path) {
        const std::string entry = XdgAutostartLoginItem::desktopEntry(path);
        const auto start = entry.find("\nExec=") + 6;
        return entry.substr(start, entry.find('\n', start) - start);
    };
    EXPECT_EQ(exec("/usr/bin/voltaro"), "/usr/bin/voltaro");
    EXPECT_EQ(exec("/home/a b/voltaro"), "\"/home/a b/voltaro\"");
    EXPECT_EQ(exec("/opt/100%/voltaro"), "/opt/100%%/voltaro");
    EXPECT_EQ(exec("/x/$HOME\\y/\"v\""), "\"/x/\\\\$HOME\\\\\\\\y/\\\\\"v\\\\\"\"");
    EXPECT_EQ(exec("/odd\nname"), "\"/odd\\nname\"");
    EXPECT_EQ(exec("/x/`id`"), "\"/x/\\\\`id\\\\`\"");
}

TEST(XdgAutostartEntryTest, FindsTheConfigurationFolder) {
    testing::ScopedEnvironment home("HOME", "/home/ada");
    {
        testing::ScopedEnvironment config("XDG_CONFIG_HOME", "/srv/config");
        EXPECT_EQ(XdgAutostartLoginItem::configHomeFromEnvironment(), "/srv/config");
    }
    {
        testing::ScopedEnvironment config("XDG_CONFIG_HOME", "relative/config");
        EXPECT_EQ(XdgAutostartLoginItem::configHomeFromEnvironment(), "/home/ada/.config");
    }
    testing::ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(XdgAutostartLoginItem::configHomeFromEnvironment(), "/home/ada/.config");
}

TEST(XdgAutostartEntryTest, TheApplicationsLoginItemStartsThisVeryProgram) {
    testing::TemporaryDirectory home;
    testing::ScopedEnvironment config("XDG_CONFIG_HOME", home.path().string());
    const auto loginItem = makeLoginItemService();
    ASSERT_EQ(loginItem->registerItem(), std::nullopt);

    // An absolute path, so the session starts the installed program, not the first "voltaro"
    // on its PATH.
    const std::string entry = contents(home.path() / "autostart" / "voltaro.desktop");
    const auto start = entry.find("\nExec=") + 6;
    const std::filesystem::path exec = entry.substr(start, entry.find('\n', start) - start);
    EXPECT_TRUE(exec.is_absolute()) << entry;
    EXPECT_EQ(exec, std::filesystem::canonical("/proc/self/exe"));
}

}  // namespace
}  // namespace voltaro::platform
