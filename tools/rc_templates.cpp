// Turns the dialogs of a resource script into C++ tables for systems without a resource compiler.
// usage: rc_templates FILE.rc OUT.cpp FUNCTION    FUNCTION() hands the tables to platform::add_dialog_templates.
//
// Of the script's language it knows what our dialogs use: DIALOG, STYLE, CAPTION, FONT, BEGIN, END, the control
// statements below, "//" comments, #lines (passed over), and "" for a quote inside a string. Anything else is an error
// with its line number: a template that lost a control in silence would be worse than a failed build.
#include <cctype>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Token {
    enum class Kind { word, number, text, comma, end } kind;
    std::string text;
};

// One line's tokens. Words joined by "|" are one word each; the bars are dropped.
std::vector<Token> split(const std::string& line, int number)
{
    std::vector<Token> tokens;
    for (std::size_t i = 0; i < line.size();) {
        const char c = line[i];
        if (std::isspace(static_cast<unsigned char>(c)) || c == '|') {
            ++i;
        } else if (c == ',') {
            tokens.push_back({Token::Kind::comma, ","});
            ++i;
        } else if (c == '"') {
            std::string text;
            for (++i;; ++i) {
                if (i >= line.size()) throw std::runtime_error("line " + std::to_string(number) + ": open string");
                if (line[i] == '"' && (i + 1 >= line.size() || line[i + 1] != '"')) break;
                if (line[i] == '"') ++i;
                text += line[i];
            }
            ++i;
            tokens.push_back({Token::Kind::text, text});
        } else if (c == '/' && i + 1 < line.size() && line[i + 1] == '/') {
            break;
        } else {
            std::string word;
            while (i < line.size() && (std::isalnum(static_cast<unsigned char>(line[i])) || line[i] == '_' ||
                                       (word.empty() && line[i] == '-'))) {
                word += line[i++];
            }
            if (word.empty()) throw std::runtime_error("line " + std::to_string(number) + ": what is '" + c + "'?");
            const bool is_number = std::isdigit(static_cast<unsigned char>(word.back())) &&
                                   (std::isdigit(static_cast<unsigned char>(word[0])) || word[0] == '-');
            tokens.push_back({is_number ? Token::Kind::number : Token::Kind::word, word});
        }
    }
    tokens.push_back({Token::Kind::end, ""});
    return tokens;
}

std::string quoted(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + "\"";
}

// Reads the fields of a statement one by one.
class Fields {
public:
    Fields(const std::vector<Token>& tokens, int line) : tokens_(tokens), line_(line) {}
    std::string take(Token::Kind kind)
    {
        if (tokens_[at_].kind == Token::Kind::comma) ++at_;
        if (tokens_[at_].kind != kind) {
            throw std::runtime_error("line " + std::to_string(line_) + ": unexpected '" + tokens_[at_].text + "'");
        }
        return tokens_[at_++].text;
    }
    void skip_words()
    {
        if (tokens_[at_].kind == Token::Kind::comma) ++at_;
        while (tokens_[at_].kind == Token::Kind::word) ++at_;
    }
    bool has(const std::string& word) const
    {
        for (const Token& token : tokens_) {
            if (token.kind == Token::Kind::word && token.text == word) return true;
        }
        return false;
    }

private:
    const std::vector<Token>& tokens_;
    int line_;
    std::size_t at_ = 1;
};

struct Dialog {
    std::string name, caption, size, controls;
};

std::string control_row(const std::string& statement, Fields fields, int line)
{
    std::string kind, text = quoted(""), id;
    if (statement == "LTEXT" || statement == "CTEXT") kind = "text";
    if (statement == "GROUPBOX") kind = "group";
    if (statement == "PUSHBUTTON" || statement == "DEFPUSHBUTTON") kind = "button";
    if (statement == "EDITTEXT") kind = "edit";
    if (statement == "LISTBOX") kind = "list";
    if (statement == "COMBOBOX") kind = "combo";
    const bool generic = statement == "CONTROL";
    if (kind.empty() && !generic) {
        throw std::runtime_error("line " + std::to_string(line) + ": unknown statement " + statement);
    }
    if (kind != "edit" && kind != "list" && kind != "combo") text = quoted(fields.take(Token::Kind::text));
    id = fields.take(Token::Kind::number);
    if (generic) {
        if (fields.take(Token::Kind::text) != "Button" ||
            !(fields.has("BS_CHECKBOX") || fields.has("BS_AUTOCHECKBOX"))) {
            throw std::runtime_error("line " + std::to_string(line) + ": only check boxes are made by CONTROL");
        }
        fields.skip_words(); // the style
        kind = "check_box";
    }
    std::string row = "    {ControlKind::" + kind + ", " + id + ", " + text;
    for (int i = 0; i < 4; ++i) row += ", " + fields.take(Token::Kind::number);
    row += fields.has("ES_READONLY") ? ", true" : ", false";
    row += statement == "CTEXT" ? ", true" : ", false";
    row += statement == "DEFPUSHBUTTON" ? ", true},\n" : ", false},\n";
    return row;
}

std::vector<Dialog> parse(std::istream& script)
{
    std::vector<Dialog> dialogs;
    std::string line;
    bool inside = false;
    for (int number = 1; std::getline(script, line); ++number) {
        if (!line.empty() && line[0] == '#') continue;
        const std::vector<Token> tokens = split(line, number);
        if (tokens[0].kind == Token::Kind::end) continue;
        const std::string& first = tokens[0].text;
        Fields fields(tokens, number);
        if (tokens[1].text == "DIALOG") {
            fields.take(Token::Kind::word);
            fields.take(Token::Kind::number);
            fields.take(Token::Kind::number);
            const std::string width = fields.take(Token::Kind::number);
            dialogs.push_back({first, quoted(""), width + ", " + fields.take(Token::Kind::number), ""});
        } else if (dialogs.empty()) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + first + " outside a dialog");
        } else if (first == "CAPTION") {
            dialogs.back().caption = quoted(fields.take(Token::Kind::text));
        } else if (first == "BEGIN" || first == "END") {
            inside = first == "BEGIN";
        } else if (inside) {
            dialogs.back().controls += control_row(first, fields, number);
        } else if (first != "STYLE" && first != "FONT") {
            throw std::runtime_error("line " + std::to_string(number) + ": unknown statement " + first);
        }
    }
    return dialogs;
}

} // namespace

int main(int count, char** words)
{
    if (count != 4) {
        std::cerr << "usage: rc_templates FILE.rc OUT.cpp FUNCTION\n";
        return 2;
    }
    try {
        std::ifstream script(words[1]);
        if (!script) throw std::runtime_error("can't be read");
        const std::vector<Dialog> dialogs = parse(script);
        std::ostringstream out;
        out << "// Made by rc_templates; changes belong in the resource script.\n"
               "#include \"lib/platform/dialogs/dialog_templates.h\"\n\nusing platform::ControlKind;\n\n";
        for (const Dialog& dialog : dialogs) {
            out << "static const platform::DialogControl " << dialog.name << "_controls[] = {\n"
                << dialog.controls << "};\n";
        }
        out << "\nstatic const platform::DialogTemplate templates[] = {\n";
        for (const Dialog& dialog : dialogs) {
            out << "    {\"" << dialog.name << "\", " << dialog.caption << ", " << dialog.size << ", " << dialog.name
                << "_controls, sizeof " << dialog.name << "_controls / sizeof " << dialog.name << "_controls[0]},\n";
        }
        out << "};\n\nvoid " << words[3] << "();\nvoid " << words[3]
            << "()\n{\n    platform::add_dialog_templates(templates, sizeof templates / sizeof templates[0]);\n}\n";
        std::ofstream file(words[2]);
        file << out.str();
        if (!file.flush()) throw std::runtime_error(std::string("can't write ") + words[2]);
    } catch (const std::exception& error) {
        std::cerr << words[1] << ": " << error.what() << "\n";
        return 1;
    }
    return 0;
}
