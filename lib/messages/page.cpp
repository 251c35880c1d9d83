#include "lib/messages/page.h"

#include "lib/messages/table.h"

namespace messages {

static const char* level_name(Level level)
{
    switch (level) {
    case Level::info: return "note";
    case Level::warning: return "warning";
    case Level::error: return "error";
    case Level::part: break;
    }
    return "part";
}

// As in the table, but of a place only its name, and one blank for a line end and its indent.
static std::string shown_text(std::string_view text)
{
    std::string out;
    while (!text.empty()) {
        const Piece piece = next_piece(text);
        switch (piece.kind) {
        case Piece::Kind::words:
            for (const char c : piece.words)
                if (c > ' ' || !out.ends_with(' ')) out += c > ' ' ? c : ' ';
            break;
        case Piece::Kind::open: out += "["; break;
        case Piece::Kind::otherwise: out += "] or ["; break;
        case Piece::Kind::close: out += "]"; break;
        default: out.append("*").append(piece.words).append("*");
        }
        if (!piece.many.empty()) out.append(" ").append(piece.many);
    }
    return out;
}

std::string page()
{
    std::string page =
        "# 6. Messages\n\n"
        "Made from the table in `lib/messages/table.h` by `messages_page`; a test fails when they part.\n\n"
        "Messages go to standard error, one a line: `error:` or `warning:`, the file where there is one, then the "
        "text. Notes have\n"
        "no word in front, and `--quiet` keeps them back. Below, *names* stand for values, and what is in brackets is "
        "left away where\n"
        "there is nothing to say. A part stands within other messages. Codes stay the same when texts get better.\n";
    for (const Section& section : sections) {
        page.append("\n## ")
            .append(section.title)
            .append("\n\n| Code | Level | Text | What it means, what to do |\n|---|---|---|---|\n");
        for (const Row& row : section.rows) {
            page.append("| `").append(row.code).append("` | ").append(level_name(row.level)).append(" | ");
            page.append(shown_text(row.text)).append(" | ").append(row.help).append(" |\n");
        }
    }
    return page;
}

} // namespace messages
