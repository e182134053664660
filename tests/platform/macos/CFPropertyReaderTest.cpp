#include "platform/macos/CFPropertyReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>

#include "platform/macos/FakeCoreFoundation.h"

namespace voltaro::platform {
namespace {

using testing::FakeCoreFoundation;

TEST(CFPropertyReaderTest, KeepsEachValueOfItsOwnKind) {
    using Make = std::function<CFObject(FakeCoreFoundation&)>;
    const std::uint64_t minus1000Unsigned = 18446744073709550616u;
    const struct {
        const char* description;
        Make make;
        std::optional<PropertyValue> expected;
    } cases[] = {
        {"8-bit", [](auto& cf) { return cf.number(kCFNumberSInt8, std::int64_t{-5}); },
         std::int64_t{-5}},
        {"16-bit", [](auto& cf) { return cf.number(kCFNumberSInt16, std::int64_t{-300}); },
         std::int64_t{-300}},
        {"32-bit", [](auto& cf) { return cf.number(kCFNumberSInt32, std::int64_t{-1000}); },
         std::int64_t{-1000}},
        {"C int", [](auto& cf) { return cf.number(kCFNumberInt, std::int64_t{57}); },
         std::int64_t{57}},
        {"64-bit minimum",
         [](auto& cf) {
             return cf.number(kCFNumberSInt64, std::numeric_limits<std::int64_t>::min());
         },
         std::numeric_limits<std::int64_t>::min()},
        {"unsigned above the signed range",
         [&](auto& cf) { return cf.wideUnsigned(minus1000Unsigned, false); }, minus1000Unsigned},
        {"unsigned whose conversion is called lossy",
         [&](auto& cf) { return cf.wideUnsigned(minus1000Unsigned, true); }, minus1000Unsigned},
        {"2^63", [](auto& cf) { return cf.wideUnsigned(std::uint64_t{1} << 63, true); },
         std::uint64_t{1} << 63},
        {"32-bit float", [](auto& cf) { return cf.number(kCFNumberFloat32, 57.9); }, double{57.9f}},
        {"double", [](auto& cf) { return cf.number(kCFNumberFloat64, -0.5); }, -0.5},
        {"true is a boolean, not 1", [](auto& cf) { return cf.boolean(true); }, true},
        {"false", [](auto& cf) { return cf.boolean(false); }, false},
        {"text", [](auto& cf) { return cf.string("Déjà 🔋"); }, "Déjà 🔋"},
        {"text without a UTF-8 form", [](auto& cf) { return cf.unconvertibleString(); },
         std::nullopt},
        {"data, arrays, dates", [](auto& cf) { return cf.other(); }, std::nullopt},
    };
    for (const auto& c : cases) {
        FakeCoreFoundation cf;
        const auto calls = cf.calls();
        const CFObject top = cf.dictionary({{cf.string("Key"), c.make(cf)}});
        const auto dictionary = CFPropertyReader(calls).dictionary(top);
        ASSERT_TRUE(dictionary) << c.description;
        const PropertyValue* value = dictionary->find("Key");
        EXPECT_EQ(value ? std::optional(*value) : std::nullopt, c.expected) << c.description;
        EXPECT_EQ(cf.misuse, std::vector<std::string>{}) << c.description;
        EXPECT_EQ(cf.referenceCount(top), 1) << "borrowed, not released: " << c.description;
    }
}

TEST(CFPropertyReaderTest, NestsDictionariesWithTextKeysOnly) {
    FakeCoreFoundation cf;
    const auto calls = cf.calls();
    const CFObject numberKeyed = cf.dictionary(
        {{cf.number(kCFNumberInt, std::int64_t{1}), cf.number(kCFNumberInt, std::int64_t{2})}});
    const CFObject top = cf.dictionary({
        {cf.string("PowerTelemetryData"),
         cf.dictionary({{cf.string("SystemLoad"), cf.number(kCFNumberSInt64, std::int64_t{9})}})},
        {cf.string("NumberKeyed"), numberKeyed},
        {cf.unconvertibleString(), cf.boolean(true)},
        {cf.string("Voltage"), cf.number(kCFNumberSInt32, std::int64_t{12000})},
    });

    const PropertyDictionary expected{
        {"PowerTelemetryData", PropertyDictionary{{"SystemLoad", std::int64_t{9}}}},
        {"Voltage", std::int64_t{12000}},
    };
    EXPECT_EQ(CFPropertyReader(calls).dictionary(top), expected);
    EXPECT_EQ(cf.misuse, std::vector<std::string>{});
}

TEST(CFPropertyReaderTest, RejectsWhatIsNotATextKeyedDictionary) {
    FakeCoreFoundation cf;
    const auto calls = cf.calls();
    const CFPropertyReader reader(calls);

    EXPECT_EQ(reader.dictionary(cf.dictionary(
                  {{cf.string("A"), cf.boolean(true)}, {cf.boolean(true), cf.boolean(false)}})),
              std::nullopt);
    EXPECT_EQ(reader.dictionary(cf.other()), std::nullopt);
    EXPECT_EQ(reader.dictionary(nullptr), std::nullopt);
    EXPECT_EQ(reader.dictionary(cf.dictionary({})), PropertyDictionary{});
    EXPECT_EQ(reader.text(cf.boolean(true)), std::nullopt);
}

}  // namespace
}  // namespace voltaro::platform
