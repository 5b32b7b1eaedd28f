// Tokens, the number test and keyword look-up through their export symbols.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "optimisation/options_tables.h"
#include "zek2/e04.h"

namespace {

std::vector<std::string> tokens_of(const std::string &line, int max_tokens = 10, int width = 16) {
    std::vector<char> slots(static_cast<std::size_t>(max_tokens * width), '#');
    int n = -1;
    E04_TOKENISE(line.data(), max_tokens, &n, slots.data(), static_cast<int>(line.size()), width);
    std::vector<std::string> out;
    for (int i = 0; i < max_tokens; ++i) {
        std::string slot(slots.data() + i * width, static_cast<std::size_t>(width));
        if (i >= n) {
            EXPECT_EQ(slot, std::string(static_cast<std::size_t>(width), ' ')) << "unused slot " << i;
            continue;
        }
        out.push_back(slot.substr(0, slot.find_last_not_of(' ') + 1));
    }
    return out;
}

struct TokenCase {
    std::string line;
    std::vector<std::string> tokens;
};

class Tokenise : public testing::TestWithParam<TokenCase> {};

TEST_P(Tokenise, CutsAtDelimitersUpperCasesAndDropsComments) { EXPECT_EQ(tokens_of(GetParam().line), GetParam().tokens); }

INSTANTIATE_TEST_SUITE_P(
    Lines, Tokenise,
    testing::Values(TokenCase{"Iterations Limit = 100", {"ITERATIONS", "LIMIT", "100"}},
                    TokenCase{"  a:b,c=d(e)f  ", {"A", "B", "C", "D", "E", "F"}},
                    TokenCase{"Print level 5 * a comment with words", {"PRINT", "LEVEL", "5"}},
                    TokenCase{"* only a comment", {}},
                    TokenCase{"", {}},
                    TokenCase{"averyveryverylongkeyword 1", {"AVERYVERYVERYLON", "1"}},
                    TokenCase{"1 2 3 4 5 6 7 8 9 10 11 12", {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}},
                    // Only 72 characters count: the word at column 73 is not seen.
                    TokenCase{std::string("x") + std::string(71, ' ') + "ignored", {"X"}},
                    TokenCase{std::string(70, ' ') + "abcdef", {"AB"}}));

TEST(Tokenise, ByReferenceFormAndShortSlots) {
    const std::string line = "feasibility tolerance";
    char slots[2 * 4];
    int n = 0;
    const int max = 2;
    E04_TOKENISE_BYREF(line.data(), &max, &n, slots, static_cast<int>(line.size()), 4);
    EXPECT_EQ(n, 2);
    EXPECT_EQ(std::string(slots, 8), "FEASTOLE");
}

struct NumberCase {
    const char *token;
    int expected;
};

class IsNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(IsNumber, FollowsTheCharacterCounts) {
    std::string token = GetParam().token;
    token.resize(16, ' ');
    EXPECT_EQ(E04_IS_NUMBER(token.data(), 16), GetParam().expected) << GetParam().token;
}

INSTANTIATE_TEST_SUITE_P(Tokens, IsNumber,
                         testing::Values(NumberCase{"100", 1}, NumberCase{"-1.5E-08", 1}, NumberCase{"1D5", 1},
                                         NumberCase{"+.5", 1}, NumberCase{"--1", 1}, NumberCase{"---1", 0},
                                         NumberCase{"++1", 1}, NumberCase{"+++1", 0}, NumberCase{"1.2.3", 0},
                                         NumberCase{"1E5E5", 0}, NumberCase{"1DE5", 0}, NumberCase{"E", 0},
                                         NumberCase{"-.", 0}, NumberCase{"12A", 0}, NumberCase{"LEVEL", 0},
                                         NumberCase{"", 0}, NumberCase{"7 X", 1}));

struct LookupCase {
    zek::e04::Family family;
    int table;  // 1, 2 or 3
    const char *word;
    int result;  // > 0 found, < 0 ambiguous, 0 not found
    const char *replaced;
};

class KeyLookup : public testing::TestWithParam<LookupCase> {};

TEST_P(KeyLookup, AcceptsUniqueAbbreviationsAndSynonyms) {
    const LookupCase c = GetParam();
    const zek::e04::FamilyTables &t = zek::e04::family_tables(c.family);
    const zek::e04::KeywordTable &table = c.table == 1 ? t.first : c.table == 2 ? t.second : t.third;
    const std::string packed = table.packed();
    std::string word = c.word;
    word.resize(16, ' ');
    int result = 99;
    E04_KEY_LOOKUP(table.count, packed.data(), 1, word.data(), &result, 16, 16);
    EXPECT_EQ((result > 0) - (result < 0), (c.result > 0) - (c.result < 0)) << c.word << " gave " << result;
    if (c.replaced != nullptr) {
        std::string expected = c.replaced;
        expected.resize(16, ' ');
        EXPECT_EQ(word, expected) << c.word;
    }
    if (result > 0) {
        // The result names an entry that is the replaced keyword itself.
        const std::string entry = packed.substr(static_cast<std::size_t>(result - 1) * 16, 16);
        EXPECT_EQ(entry.substr(0, entry.find_first_of(" :")), std::string(c.replaced));
    }
}

using zek::e04::Family;
INSTANTIATE_TEST_SUITE_P(
    Tables, KeyLookup,
    testing::Values(LookupCase{Family::MFA, 1, "ITER", 1, "ITERATIONS"},
                    LookupCase{Family::MFA, 1, "ITNS", 1, "ITERATIONS"},
                    LookupCase{Family::MFA, 1, "IT", 1, "ITERATIONS"},
                    LookupCase{Family::MFA, 1, "MIN", 1, "MINIMIZ"},
                    LookupCase{Family::MFA, 1, "MINIMIZE", 0, "MINIMIZE"},
                    LookupCase{Family::MFA, 1, "C", -1, "C"},       // CHECK, COLD, CRASH
                    LookupCase{Family::MFA, 1, "ZZZ", 0, "ZZZ"},
                    LookupCase{Family::MFA, 1, "", 0, ""},
                    LookupCase{Family::NFA, 1, "MAX", 1, "MAXIMUM"},
                    LookupCase{Family::NFA, 1, "M", -1, "M"},       // MAXIMUM against MINIMIZ
                    LookupCase{Family::NFA, 3, "QP", 1, "QP2"},
                    LookupCase{Family::NFA, 3, "QUAD", 1, "QP2"},
                    LookupCase{Family::NCA, 3, "LEAST", 1, "LS1"},
                    LookupCase{Family::NCA, 2, "NO", 1, "NO"},
                    LookupCase{Family::NCA, 2, "NO.", 1, "NUMBER"},
                    LookupCase{Family::NCA, 2, "N", -1, "N"},
                    LookupCase{Family::UCA, 1, "LINES", 1, "LINE"},
                    LookupCase{Family::USA, 1, "J", 1, "JTJ"},
                    LookupCase{Family::UCA, 1, "UN", 0, "UN"}));

TEST(KeyLookup, ByReferenceFormAndDegenerateArguments) {
    const std::string table = std::string("ALPHA") + std::string(11, ' ') + "BETA" + std::string(12, ' ');
    std::string word = "BE      ";
    int result = 0;
    const int count = 2, ordered = 1;
    E04_KEY_LOOKUP_BYREF(&count, table.data(), &ordered, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 2);
    EXPECT_EQ(word, "BETA    ");
    // Nothing to search, or nowhere to write: not found, nothing touched.
    E04_KEY_LOOKUP(0, table.data(), 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
    E04_KEY_LOOKUP(2, nullptr, 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
    // A table whose synonyms point at each other ends its search.
    const std::string loop = std::string("A:B") + std::string(13, ' ') + "B:A" + std::string(13, ' ');
    word = "A       ";
    E04_KEY_LOOKUP(2, loop.data(), 1, word.data(), &result, 16, 8);
    EXPECT_EQ(result, 0);
}

// Every keyword table is ascending in its keywords (a synonym may follow the longer word it
// abbreviates, as MAX follows MAXIMUM), as the look-up's early stop requires, and every keyword of a
// first table stores something.
TEST(KeywordTables, AreAscendingAndEveryKeywordHasAPhrase) {
    auto own = [](const std::string &entry) {
        const std::string w = entry.substr(0, entry.find(':'));
        return w.substr(0, w.find_last_not_of(' ') + 1);
    };
    for (int f = 0; f < zek::e04::kFamilyCount; ++f) {
        const zek::e04::FamilyTables &t = zek::e04::family_tables(static_cast<Family>(f));
        for (const zek::e04::KeywordTable *table : {&t.first, &t.second, &t.third}) {
            for (int j = 1; j < table->count; ++j) {
                const std::string a = own(table->entries[j - 1]), b = own(table->entries[j]);
                const std::size_t m = std::min(a.size(), b.size());
                EXPECT_LE(a.compare(0, m, b, 0, m), 0) << t.solver << " entry " << j + 1 << " " << b;
                EXPECT_NE(a, b) << t.solver << " entry " << j + 1;
            }
        }
        for (int j = 0; j < t.first.count; ++j) {
            const std::string entry = t.first.entries[j];
            if (entry.find(':') != std::string::npos) continue;
            if (entry == "BEGIN" || entry == "END" || entry == "LIST" || entry == "NOLIST") continue;
            bool found = false;
            for (const zek::e04::Phrase &p : t.phrases) found = found || entry == p.first;
            EXPECT_TRUE(found) << t.solver << " " << entry;
        }
    }
}

} // namespace
