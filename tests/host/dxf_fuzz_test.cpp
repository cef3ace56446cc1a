// Mutated drawings: each is refused with a line, or is whole and stays what it is once written.

#include "dxf_samples.h"

#include "support/host_test.h"

#include <random>

namespace tests::dxf {
namespace {

class MutatedDrawings : public HostTest {};

using Random = std::mt19937_64;

std::size_t pick(Random& random, std::size_t count)
{
    return static_cast<std::size_t>(random() % count);
}

/// One small harm: to a byte, a line, or a stretch.
void harm(std::string& text, Random& random)
{
    constexpr std::string_view kLines[] = {
        "  0",          "SECTION",  "ENDSEC", "1e999",  "-1",  "  5",  "50",
        "*Model_Space", "{",        "102",    "100",    "101", "\\U+", "EOF",
        "99999999999",  "\xFF\xFE", "BLOCK",  "SEQEND", "nan", ""};
    const std::size_t place = pick(random, text.size());
    const std::size_t lineBegin = text.rfind('\n', place) + 1;
    const std::size_t lineEnd = std::min(text.find('\n', place), text.size());
    switch (pick(random, 5)) {
    case 0:
        text[place] = static_cast<char>(random());
        break;
    case 1:
        if (lineBegin <= lineEnd)
            text.replace(lineBegin, lineEnd - lineBegin, kLines[pick(random, std::size(kLines))]);
        break;
    case 2:
        text.erase(place, pick(random, 40));
        break;
    case 3:
        text.insert(place, text.substr(pick(random, text.size()), pick(random, 200)));
        break;
    default: { // swap two neighbouring tags, or a code for a value
        const std::size_t next = text.find('\n', lineEnd + 1);
        if (lineBegin <= lineEnd && next != text.npos)
            text = text.substr(0, lineBegin) + text.substr(lineEnd + 1, next - lineEnd) +
                   text.substr(lineBegin, lineEnd + 1 - lineBegin) + text.substr(next + 1);
    }
    }
}

/// True when the text was read; what is written of it then reads back and is written the same.
bool survives(const std::string& text, int round)
{
    KdDbDatabase database(false);
    const auto outcome = korra::readDrawingText(database, text, "mutated.dxf");
    EXPECT_EQ(outcome.done, outcome.message.empty()) << round;
    if (!outcome.done) {
        EXPECT_TRUE(database.contents().slots.empty()) << round;
        EXPECT_EQ(outcome.message.rfind("mutated.dxf:", 0), 0u) << round;
        EXPECT_EQ(outcome.message.find('\n'), outcome.message.npos) << round;
        return false;
    }
    const std::string written = korra::drawingText(database);
    KdDbDatabase again(false);
    const auto second = korra::readDrawingText(again, written, "written.dxf");
    EXPECT_TRUE(second.done) << round << ' ' << second.message;
    EXPECT_EQ(korra::drawingText(again), written) << round;
    return true;
}

TEST_F(MutatedDrawings, AreRefusedOrWhole)
{
    constexpr int kRounds = 3000;
    Random random(20240229); // the same harm in every run
    int read = 0;
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        std::string text = file(round % 2 == 0 ? kModernSample : kEarlySample);
        for (std::size_t count = 1 + pick(random, 3); count > 0; --count)
            harm(text, random);
        read += survives(text, round) ? 1 : 0;
    }
    EXPECT_GT(read, kRounds / 20); // both ways are gone
    EXPECT_LT(read, kRounds * 19 / 20);
}

} // namespace
} // namespace tests::dxf
