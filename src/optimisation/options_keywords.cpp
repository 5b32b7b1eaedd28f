// Tokens, numbers and keyword look-up of the option lines.
#include <algorithm>
#include <cctype>
#include <cstring>

#include "optimisation/options_tables.h"
#include "zek2/e04.h"

namespace zek::e04 {

namespace {

bool is_delimiter(char c) { return c == ' ' || c == ':' || c == ',' || c == '=' || c == '(' || c == ')'; }

char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

// The keyword an entry stands under: its text before a colon, without trailing blanks.
int own_length(const char *entry, int width) {
    int n = 0;
    while (n < width && entry[n] != ':') ++n;
    while (n > 0 && entry[n - 1] == ' ') --n;
    return n;
}

// The text after an entry's colon (the entry it stands for), or an empty range.
void synonym_of(const char *entry, int width, int *start, int *length) {
    *start = 0;
    *length = 0;
    const void *colon = std::memchr(entry, ':', static_cast<std::size_t>(width));
    if (colon == nullptr) return;
    int s = static_cast<int>(static_cast<const char *>(colon) - entry) + 1;
    while (s < width && entry[s] == ' ') ++s;
    int e = s;
    while (e < width && entry[e] != ' ') ++e;
    *start = s;
    *length = e - s;
}

// The keyword an entry finally names: the synonym's target, or its own word.
std::string final_word(const char *entry, int width) {
    int s = 0, n = 0;
    synonym_of(entry, width, &s, &n);
    if (n > 0) return std::string(entry + s, static_cast<std::size_t>(n));
    return std::string(entry, static_cast<std::size_t>(own_length(entry, width)));
}

int compare_prefix(const char *entry, const char *key, int m) {
    for (int i = 0; i < m; ++i) {
        const auto a = static_cast<unsigned char>(entry[i]);
        const auto b = static_cast<unsigned char>(key[i]);
        if (a != b) return a < b ? -1 : 1;
    }
    return 0;
}

} // namespace

std::string Tokens::word(int i) const {
    if (i < 0 || i >= kMaxTokens) return std::string();
    int n = kTokenLength;
    while (n > 0 && slot[i][n - 1] == ' ') --n;
    return std::string(slot[i], static_cast<std::size_t>(n));
}

static void tokenise_into(const char *line, int length, int max_tokens, int *ntokens, char *tokens, int token_len) {
    int n = 0;
    if (line != nullptr) {
        n = std::min(std::max(length, 0), kLineLength);
        const void *nul = std::memchr(line, '\0', static_cast<std::size_t>(n));
        if (nul != nullptr) n = static_cast<int>(static_cast<const char *>(nul) - line);
        // Everything from the first '*' on is a comment.
        const void *star = std::memchr(line, '*', static_cast<std::size_t>(n));
        if (star != nullptr) n = static_cast<int>(static_cast<const char *>(star) - line);
    }
    const int slots = std::max(max_tokens, 0);
    const int width = std::max(token_len, 0);
    if (tokens != nullptr && slots > 0 && width > 0)
        std::memset(tokens, ' ', static_cast<std::size_t>(slots) * static_cast<std::size_t>(width));
    int count = 0;
    int i = 0;
    while (i < n && count < slots) {
        while (i < n && is_delimiter(line[i])) ++i;
        const int start = i;
        while (i < n && !is_delimiter(line[i])) ++i;
        if (i > start) {
            if (tokens != nullptr && width > 0) {
                char *slot = tokens + static_cast<std::ptrdiff_t>(count) * width;
                for (int k = 0; k < std::min(i - start, width); ++k) slot[k] = upper(line[start + k]);
            }
            ++count;
        }
    }
    if (ntokens != nullptr) *ntokens = count;
}

Tokens tokenise(const char *line, int length) {
    Tokens t;
    tokenise_into(line, length, kMaxTokens, &t.count, &t.slot[0][0], kTokenLength);
    return t;
}

bool is_number(const char *token, int length) {
    if (token == nullptr) return false;
    int digits = 0, exponents = 0, minus = 0, plus = 0, points = 0;
    for (int i = 0; i < length; ++i) {
        const char c = token[i];
        if (c == ' ') break;
        if (c >= '0' && c <= '9') ++digits;
        else if (c == 'D' || c == 'E') ++exponents;
        else if (c == '-') ++minus;
        else if (c == '+') ++plus;
        else if (c == '.') ++points;
        else return false;
    }
    return digits >= 1 && exponents <= 1 && minus <= 2 && plus <= 2 && points <= 1;
}

int key_lookup(int count, const char *table, bool ordered, char *word, int width, int word_width) {
    if (word == nullptr || word_width <= 0 || table == nullptr || width <= 0 || count <= 0) return 0;
    // The first token of the word, at most 16 characters.
    int s = 0;
    while (s < word_width && word[s] == ' ') ++s;
    int e = s;
    while (e < word_width && word[e] != ' ') ++e;
    std::string key(word + s, static_cast<std::size_t>(e - s));
    if (key.empty()) return 0;

    int result = 0;
    // Each pass follows at most one synonym; the bound keeps a table with a cycle of synonyms finite.
    for (int pass = 0; pass <= count; ++pass) {
        const int m = std::min<int>({static_cast<int>(key.size()), kKeywordWidth, width});
        result = 0;
        for (int j = 1; j <= count; ++j) {
            const char *entry = table + static_cast<std::ptrdiff_t>(j - 1) * width;
            const int c = compare_prefix(entry, key.data(), m);
            if (c > 0 && ordered) break;
            if (c != 0) continue;
            if (result == 0) {
                result = j;
                if (own_length(entry, width) == m) break;  // exact
            } else {
                const char *first = table + static_cast<std::ptrdiff_t>(result - 1) * width;
                if (final_word(first, width) != final_word(entry, width)) return -j;
            }
        }
        if (result <= 0) return 0;
        const char *entry = table + static_cast<std::ptrdiff_t>(result - 1) * width;
        int ss = 0, sn = 0;
        synonym_of(entry, width, &ss, &sn);
        if (sn == 0) {
            // The full keyword replaces the word, so that the decoder compares whole keywords.
            const int n = std::min(own_length(entry, width), word_width);
            std::memset(word, ' ', static_cast<std::size_t>(word_width));
            std::memcpy(word, entry, static_cast<std::size_t>(n));
            return result;
        }
        key.assign(entry + ss, static_cast<std::size_t>(sn));
    }
    return 0;
}

std::string KeywordTable::packed() const {
    std::string out(static_cast<std::size_t>(count) * kKeywordWidth, ' ');
    for (int j = 0; j < count; ++j) {
        const std::size_t n = std::min<std::size_t>(std::strlen(entries[j]), kKeywordWidth);
        out.replace(static_cast<std::size_t>(j) * kKeywordWidth, n, entries[j], n);
    }
    return out;
}

} // namespace zek::e04

extern "C" {

void E04_TOKENISE(const char *line, int max_tokens, int *ntokens, char *tokens, int line_len, int token_len) {
    zek::e04::tokenise_into(line, line_len, max_tokens, ntokens, tokens, token_len);
}

void E04_TOKENISE_BYREF(const char *line, const int *max_tokens, int *ntokens, char *tokens, int line_len,
                        int token_len) {
    zek::e04::tokenise_into(line, line_len, max_tokens != nullptr ? *max_tokens : 0, ntokens, tokens, token_len);
}

int E04_IS_NUMBER(const char *token, int token_len) { return zek::e04::is_number(token, token_len) ? 1 : 0; }

void E04_KEY_LOOKUP(int count, const char *table, int ordered, char *word, int *result, int table_width,
                    int word_width) {
    const int r = zek::e04::key_lookup(count, table, ordered != 0, word, table_width, word_width);
    if (result != nullptr) *result = r;
}

void E04_KEY_LOOKUP_BYREF(const int *count, const char *table, const int *ordered, char *word, int *result,
                          int table_width, int word_width) {
    E04_KEY_LOOKUP(count != nullptr ? *count : 0, table, ordered != nullptr ? *ordered : 1, word, result,
                   table_width, word_width);
}

} // extern "C"
