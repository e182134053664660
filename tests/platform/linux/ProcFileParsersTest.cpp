#include "platform/linux/ProcFileParsers.h"

#include <gtest/gtest.h>

#include <string>

namespace voltaro::platform {
namespace {

// Fields 3 to 52 of a real stat line, after "PID (name)".
std::string statTail(const std::string& ppid = "1490", const std::string& utime = "2411",
                     const std::string& stime = "180", const std::string& start = "53012") {
    return " S " + ppid + " 3415 3322 34816 3415 4194560 41022 0 0 0 " + utime + " " + stime +
           " 0 0 20 0 1 0 " + start +
           " 254316544 6720 18446744073709551615 1 1 0 0 0 0 0 0 0 0 0 0 0 17 1 0 0 0 0 0 0 0 "
           "0 0 0 0 0 0\n";
}

struct StatCase {
    const char* description;
    std::string text;
    std::optional<StatFields> expected;
};

TEST(ProcFileParsersTest, ReadsStatFieldsAfterTheLastParenthesis) {
    const StatFields usual{1490, 2411, 180, 53012};
    const StatCase cases[] = {
        {"plain name", "3420 (cc1plus)" + statTail(), usual},
        {"name with spaces", "2870 (Socket Process)" + statTail(), usual},
        {"name that mimics the fields", "777 (evil) S 1 (x)" + statTail(), usual},
        {"name with a newline", "778 (a\nb)" + statTail(), usual},
        {"empty name", "779 ()" + statTail(), usual},
        {"no line end", "3420 (cc1plus)" + statTail().substr(0, statTail().size() - 1), usual},
        {"kernel thread", "2 (kthreadd)" + statTail("0", "0", "4", "2"), StatFields{0, 0, 4, 2}},
        {"largest counters",
         "1 (x)" + statTail("1", "18446744073709551615", "0", "18446744073709551615"),
         StatFields{1, 18446744073709551615u, 0, 18446744073709551615u}},
        {"truncated before the start time", "779 (garbled) S 700 779 779 0 -1 4194560 2214 0 3\n",
         std::nullopt},
        {"no closing parenthesis", "3420 (cc1plus" + statTail(), std::nullopt},
        {"no opening parenthesis", "3420 cc1plus)" + statTail(), std::nullopt},
        {"empty", "", std::nullopt},
        {"counter too large", "1 (x)" + statTail("1", "18446744073709551616"), std::nullopt},
        {"negative counter", "1 (x)" + statTail("1", "-5"), std::nullopt},
        {"negative parent", "1 (x)" + statTail("-1"), std::nullopt},
        {"parent out of range", "1 (x)" + statTail("4294967296"), std::nullopt},
        {"letters in a counter", "1 (x)" + statTail("1", "12a"), std::nullopt},
        {"two spaces", "1 (x)  S" + statTail().substr(2), std::nullopt},
    };
    for (const StatCase& c : cases) {
        EXPECT_EQ(parseStat(c.text), c.expected) << c.description;
    }
}

TEST(ProcFileParsersTest, ReadsTheRealUserAndVoluntarySwitchesFromStatus) {
    const std::string head = "Name:\tsudo\nUmask:\t0022\nState:\tS (sleeping)\nPPid:\t3322\n";
    struct Case {
        const char* description;
        std::string text;
        std::optional<StatusFields> expected;
    } cases[] = {
        {"setuid program: real user first",
         head + "Uid:\t1000\t0\t0\t0\nGid:\t1000\t0\t0\t0\nvoluntary_ctxt_switches:\t9\n"
                "nonvoluntary_ctxt_switches:\t2\n",
         StatusFields{1000, 9}},
        {"no switch counts", head + "Uid:\t0\t0\t0\t0\n", StatusFields{0, 0}},
        {"kernel thread", head + "Uid:\t0\t0\t0\t0\nKthread:\t1\n", StatusFields{0, 0, true}},
        {"user thread", head + "Uid:\t0\t0\t0\t0\nKthread:\t0\n", StatusFields{0, 0, false}},
        {"no Uid line", head + "voluntary_ctxt_switches:\t9\n", std::nullopt},
        {"garbled Uid", head + "Uid:\tx\t0\t0\t0\nvoluntary_ctxt_switches:\t9\n", std::nullopt},
        {"Uid beyond 32 bits", head + "Uid:\t4294967296\t0\t0\t0\n", std::nullopt},
        {"garbled switches", head + "Uid:\t1000\t1000\t1000\t1000\nvoluntary_ctxt_switches:\t-\n",
         StatusFields{1000, 0}},
        {"empty", "", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseStatus(c.text), c.expected) << c.description;
    }
}

TEST(ProcFileParsersTest, ReadsStorageBytesFromIo) {
    EXPECT_EQ(parseIo("rchar: 323934931\nwchar: 323929600\nsyscr: 632687\nsyscw: 632675\n"
                      "read_bytes: 8409088\nwrite_bytes: 31457280\ncancelled_write_bytes: 0\n"),
              (IoFields{8409088, 31457280}));
    EXPECT_EQ(parseIo("read_bytes: 1\n"), std::nullopt);
    EXPECT_EQ(parseIo("read_bytes: x\nwrite_bytes: 2\n"), std::nullopt);
    EXPECT_EQ(parseSchedstatRunTime("1272546 183287 2\n"), 1272546u);
    EXPECT_EQ(parseSchedstatRunTime("garbage\n"), std::nullopt);
    EXPECT_EQ(parseDecimal("+1"), std::nullopt);
    EXPECT_EQ(parseDecimal(" 1"), std::nullopt);
}

}  // namespace
}  // namespace voltaro::platform
