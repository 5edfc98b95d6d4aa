// Every problem's text held against the bank's written template: the
// literal words exactly (two blanks after a sentence, CRLF between listed
// numbers), each slot filled with the value the drill kept in that slot,
// and the pronoun by the tag of the first name.
#include "bank_model.h"
#include "bank_templates.h"

#include <gtest/gtest.h>

#include <cctype>
#include <regex>

namespace banktest {
namespace {

struct Slot {
    std::string name; // "r1", "name2", "$t1", "He/She", "word", ...
};

// The template as a pattern: literals escaped, each {slot} a capture.
std::regex PatternOf(const std::string &tmpl, std::vector<Slot> &slots) {
    std::string pattern;
    for (size_t i = 0; i < tmpl.size();) {
        if (tmpl[i] == '{') {
            const size_t end = tmpl.find('}', i);
            const std::string slot = tmpl.substr(i + 1, end - i - 1);
            i = end + 1;
            if (slot == "CRLF") {
                pattern += "\r\n";
                continue;
            }
            slots.push_back({slot});
            if (slot[0] == '$')
                pattern += R"((\$-?[0-9]+\.[0-9][0-9]))";
            else if (slot == "He/She" || slot == "he/she")
                pattern += "([A-Za-z]+)";
            else if (slot.rfind("name", 0) == 0)
                pattern += "([A-Za-z]+)";
            else if (slot == "word")
                pattern += "(.+?)";
            else
                pattern += "(-?[0-9]+)";
            continue;
        }
        const char c = tmpl[i++];
        if (std::isalnum(static_cast<unsigned char>(c)) || c == ' ')
            pattern += c;
        else {
            pattern += '\\';
            pattern += c;
        }
    }
    return std::regex(pattern);
}

// What the drill kept in a slot, as the text should show it.
std::string SlotText(const std::string &slot) {
    const auto &p = sumbrook::P();
    const bool money = slot[0] == '$';
    const std::string name = money ? slot.substr(1) : slot;
    const int k = name.back() - '0';
    int32_t value = 0;
    if (name.rfind("name", 0) == 0)
        return p.sName[k].ToStd();
    if (name[0] == 'r')
        value = p.iRandom[k];
    else if (name[0] == 't')
        value = p.iTemp[k];
    return money ? Money(value) : S(value);
}

TEST(BankTemplates, TextsFollowTheWrittenTemplates) {
    PrepareDrill();
    ASSERT_EQ(BankTemplates().size(), 47u);
    for (const auto &[number, entry] : BankTemplates()) {
        std::vector<Slot> slots;
        const std::regex pattern = PatternOf(entry.first, slots);
        for (uint32_t seed = 1; seed <= 150; ++seed) {
            const int32_t randomizer = 1 + static_cast<int32_t>(seed % 3);
            sumbrook::ResetForSelection();
            RuntimeRandomSeed(seed * 7777u + static_cast<uint32_t>(number));
            Build(number, randomizer);
            const std::string text = sumbrook::P().sProblemString.ToStd();
            std::smatch m;
            ASSERT_TRUE(std::regex_match(text, m, pattern)) << "problem " << number << ": " << text;
            ASSERT_EQ(sumbrook::Drill().sTip.ToStd(), entry.second) << number;
            for (size_t i = 0; i < slots.size(); ++i) {
                const std::string &slot = slots[i].name;
                const std::string shown = m[i + 1].str();
                if (slot == "He/She" || slot == "he/she") {
                    const bool male = MaleIndex(sumbrook::P().iName[1]);
                    const std::string want =
                        slot == "He/She" ? (male ? "He" : "She") : (male ? "he" : "she");
                    ASSERT_EQ(shown, want) << "problem " << number << ": " << text;
                } else if (slot != "word") {
                    ASSERT_EQ(shown, SlotText(slot))
                        << "problem " << number << " slot " << slot << ": " << text;
                }
            }
        }
    }
}

} // namespace
} // namespace banktest
