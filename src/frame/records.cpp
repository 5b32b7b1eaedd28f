// The record builder: turns a message's pieces and values into fixed-width records.
#include <algorithm>
#include <cctype>
#include <cstring>

#include "frame/ifail.h"
#include "frame/output.h"

namespace zek {

void Records::add(std::string_view text) {
    const std::size_t visible = static_cast<std::size_t>(std::max(width_ - 1, 0));
    std::string slot(static_cast<std::size_t>(width_), '\0');
    const std::size_t n = std::min(text.size(), visible);
    std::memcpy(slot.data(), text.data(), n);
    storage_ += slot;
    ++count_;
}

namespace {

// One printf directive: its extent in the piece and the kind of argument it takes.
struct Directive {
    std::size_t begin = std::string::npos;
    std::size_t end = 0;
    char conversion = 0;
    bool long_modifier = false;
};

// Finds the first directive at or after `from`, skipping "%%".
Directive find_directive(std::string_view s, std::size_t from) {
    for (std::size_t i = s.find('%', from); i != std::string::npos; i = s.find('%', i)) {
        if (i + 1 < s.size() && s[i + 1] == '%') {
            i += 2;
            continue;
        }
        Directive d;
        d.begin = i;
        std::size_t j = i + 1;
        while (j < s.size() && std::strchr("-+ #0", s[j]) != nullptr) ++j;
        while (j < s.size() && (std::isdigit(static_cast<unsigned char>(s[j])) || s[j] == '.')) ++j;
        while (j < s.size() && std::strchr("hlLqjzt", s[j]) != nullptr) {
            if (s[j] == 'l' || s[j] == 'L' || s[j] == 'q' || s[j] == 'j' || s[j] == 'z' || s[j] == 't')
                d.long_modifier = true;
            ++j;
        }
        d.conversion = j < s.size() ? s[j] : 0;
        d.end = j < s.size() ? j + 1 : j;
        return d;
    }
    return Directive{};
}

// A literal piece as printf would print it: "%%" stands for "%".
std::string unescape_percent(const std::string &text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == '%' && i + 1 < text.size() && text[i + 1] == '%') ++i;
    }
    return out;
}

bool is_real_conversion(char c) { return std::strchr("eEfFgGaA", c) != nullptr; }
bool is_integer_conversion(char c) { return std::strchr("diouxXc", c) != nullptr; }

// Formats one piece holding a single directive with its value.  Pieces come from the library's own
// tables, so the directive is known; the value is converted to the kind the directive takes, so a
// mismatch can never hand printf the wrong argument type.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string format_piece(const std::string &piece, const Directive &d, const MessageValue &v) {
    const std::string conversion = piece.substr(0, d.end);
    const std::string rest = piece.substr(d.end);
    std::string out;
    if (is_real_conversion(d.conversion)) {
        const double x = v.kind() == MessageValue::Kind::Real      ? v.real()
                         : v.kind() == MessageValue::Kind::Integer ? static_cast<double>(v.integer())
                                                                   : 0.0;
        out = format(conversion.c_str(), x);
    } else if (is_integer_conversion(d.conversion)) {
        const long n = v.kind() == MessageValue::Kind::Integer ? v.integer()
                       : v.kind() == MessageValue::Kind::Real  ? static_cast<long>(v.real())
                                                               : 0L;
        out = d.long_modifier ? format(conversion.c_str(), n) : format(conversion.c_str(), static_cast<int>(n));
    } else if (d.conversion == 's') {
        const std::string text = v.kind() == MessageValue::Kind::Text ? v.text() : std::string();
        out = format(conversion.c_str(), text.c_str());
    } else {
        out = conversion;  // not a conversion we pass values to: keep the text
    }
    // Whatever follows the directive is literal text.
    return out + unescape_percent(rest);
}
#pragma GCC diagnostic pop

// Pads the buffer to the next multiple of the record's visible width; an empty buffer gets a whole one.
void close_record(std::string &buffer, std::size_t width) {
    if (width == 0) return;
    const std::size_t rem = buffer.size() % width;
    if (buffer.empty()) buffer.assign(width, ' ');
    else if (rem != 0) buffer.append(width - rem, ' ');
}

} // namespace

std::vector<std::string> message_pieces(std::string_view message) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (start <= message.size()) {
        const std::size_t nl = message.find('\n', start);
        const std::string_view line =
            message.substr(start, nl == std::string::npos ? std::string::npos : nl - start);
        // Cut the line behind each directive that another one follows.
        std::size_t piece_start = 0;
        Directive d = find_directive(line, 0);
        while (d.begin != std::string::npos) {
            const Directive next = find_directive(line, d.end);
            if (next.begin == std::string::npos) break;
            pieces.emplace_back(line.substr(piece_start, d.end - piece_start));
            piece_start = d.end;
            d = next;
        }
        if (piece_start < line.size()) pieces.emplace_back(line.substr(piece_start));
        if (nl == std::string::npos) break;
        pieces.emplace_back("\n");
        start = nl + 1;
    }
    return pieces;
}

Records build_records(const std::vector<std::string> &pieces, std::initializer_list<MessageValue> values,
                      int width) {
    const std::size_t visible = static_cast<std::size_t>(std::max(width - 1, 1));
    std::string buffer;
    const MessageValue *value = values.begin();
    bool previous_newline = false;
    bool first = true;
    for (const std::string &piece : pieces) {
        if (piece == "\n") {
            if (first || previous_newline) buffer += ' ';
            close_record(buffer, visible);
            previous_newline = true;
        } else {
            const Directive d = find_directive(piece, 0);
            if (d.begin != std::string::npos && value != values.end()) {
                buffer += format_piece(piece, d, *value++);
            } else if (d.begin != std::string::npos) {
                buffer += format_piece(piece, d, MessageValue(0L));
            } else {
                buffer += unescape_percent(piece);
            }
            previous_newline = false;
        }
        first = false;
    }
    close_record(buffer, visible);
    Records records(width);
    for (std::size_t at = 0; at < buffer.size(); at += visible)
        records.add(std::string_view(buffer).substr(at, visible));
    return records;
}

} // namespace zek
