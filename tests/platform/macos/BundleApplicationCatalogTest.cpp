#include "platform/macos/BundleApplicationCatalog.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace voltaro::platform {
namespace {

// Bundles and running applications as the test lays them out; counts the bundles opened.
class FakeWorkspace final : public ApplicationWorkspace {
  public:
    std::map<std::string, BundleInfo> bundles;
    std::map<ProcessID, std::string> runningIcons;
    std::vector<std::string> opened;

    std::optional<BundleInfo> bundleInfo(const std::string& bundlePath) override {
        opened.push_back(bundlePath);
        const auto found = bundles.find(bundlePath);
        return found == bundles.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::string> runningApplicationIconPath(ProcessID pid) override {
        const auto found = runningIcons.find(pid);
        return found == runningIcons.end() ? std::nullopt : std::optional(found->second);
    }
};

class BundleApplicationCatalogTest : public ::testing::Test {
  protected:
    BundleApplicationCatalogTest() {
        auto owned = std::make_unique<FakeWorkspace>();
        workspace = owned.get();
        catalog = std::make_unique<BundleApplicationCatalog>(std::move(owned));
    }

    static ApplicationIcon iconOf(const std::string& path) {
        return {ApplicationIcon::Kind::bundlePath, path};
    }

    FakeWorkspace* workspace;
    std::unique_ptr<BundleApplicationCatalog> catalog;
};

TEST_F(BundleApplicationCatalogTest, AProcessBelongsToTheOutermostBundleAroundItsExecutable) {
    struct Case {
        std::optional<std::string> executable;
        std::optional<std::string> application;
    };
    // Which paths lie in which bundle is ExecutablePathTest's; here, that the outermost counts.
    const Case cases[] = {
        {"/Applications/Foo.app/Contents/Frameworks/Foo Agent.app/Contents/MacOS/Foo Agent",
         "/Applications/Foo.app"},
        {std::nullopt, std::nullopt},  // the kernel would not give the path
    };
    for (const Case& test : cases) {
        EXPECT_EQ(catalog->containingApplication(42, test.executable), test.application)
            << test.executable.value_or("(no path)");
    }
    EXPECT_TRUE(workspace->opened.empty());  // finding the bundle needs no bundle opened
}

TEST_F(BundleApplicationCatalogTest, NamesAndIdentifiesABundleByWhatItsEntriesGive) {
    workspace->bundles = {
        {"/Applications/Full.app", {"Full Display", "Full Name", "com.example.full"}},
        {"/Applications/NoDisplay.app", {std::nullopt, "Short Name", "com.example.short"}},
        {"/Applications/EmptyDisplay.app", {"", "Ignored", "com.example.empty"}},
        {"/Applications/Bare.app", {std::nullopt, std::nullopt, std::nullopt}},
    };
    struct Case {
        std::string path;
        ApplicationInfo expected;
    };
    const Case cases[] = {
        {"/Applications/Full.app",
         {"com.example.full", "Full Display", iconOf("/Applications/Full.app")}},
        {"/Applications/NoDisplay.app",
         {"com.example.short", "Short Name", iconOf("/Applications/NoDisplay.app")}},
        // An empty display name is the bundle's choice and stays.
        {"/Applications/EmptyDisplay.app",
         {"com.example.empty", "", iconOf("/Applications/EmptyDisplay.app")}},
        // Without an identifier the path keeps two such bundles apart.
        {"/Applications/Bare.app",
         {"/Applications/Bare.app", "Bare", iconOf("/Applications/Bare.app")}},
        // A bundle that does not open still has its file name and the workspace's icon.
        {"/Volumes/Broken Disk/My Tool.app",
         {"/Volumes/Broken Disk/My Tool.app", "My Tool",
          iconOf("/Volumes/Broken Disk/My Tool.app")}},
        {"/Applications/Several.Dots.App",
         {"/Applications/Several.Dots.App", "Several.Dots",
          iconOf("/Applications/Several.Dots.App")}},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(catalog->describeApplication(test.path), test.expected) << test.path;
    }
}

TEST_F(BundleApplicationCatalogTest, AStandaloneProcessHasTheIconOfItsRunningApplicationIfAny) {
    workspace->runningIcons = {{100, "/usr/local/bin/server"}, {101, ""}};

    EXPECT_EQ(catalog->runningApplicationIcon(100), iconOf("/usr/local/bin/server"));
    EXPECT_EQ(catalog->runningApplicationIcon(101), std::nullopt);
    EXPECT_EQ(catalog->runningApplicationIcon(102), std::nullopt);
    EXPECT_FALSE(catalog->endsParentWalk(100, "/sbin/launchd", "launchd"));
}

}  // namespace
}  // namespace voltaro::platform
