#include "host/finding/references.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>

#include "lib/platform/latin1.h"
#include "lib/platform/text.h"

namespace host {

using messages::message;
using messages::Message;
namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

static std::string read_front(const fs::path& path, std::size_t most)
{
    std::string bytes;
    const File file(std::fopen(path.string().c_str(), "rb"));
    if (!file) return bytes;
    std::size_t want = 65536;
    while (bytes.size() < most) {
        const std::size_t had = bytes.size();
        bytes.resize(std::min(most, had + want));
        const std::size_t got = std::fread(bytes.data() + had, 1, bytes.size() - had, file.get());
        bytes.resize(had + got);
        if (got == 0) break;
        want = bytes.size();
    }
    return bytes;
}

static uint32_t be32(std::string_view bytes)
{
    uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

// ---- scenes --------------------------------------------------------------------------------------------------------

// Tokens as the scene reader cuts them, and the operand that may hold blanks.
class SceneText {
public:
    explicit SceneText(std::string_view text) : text_(text) {}

    std::size_t line() const { return line_; }

    // Empty at the end.
    std::string_view token()
    {
        skip_white();
        return take([](char c) { return c == ' ' || c == '\t' || is_end(c); });
    }

    std::string_view rest_of_line()
    {
        skip_white();
        return take([](char c) { return c == '\t' || is_end(c); });
    }

private:
    static bool is_end(char c) { return c == '\n' || c == '\r' || c == '\0'; }

    void skip_white()
    {
        for (; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (c == '\n' || (c == '\r' && text_.substr(at_ + 1, 1) != "\n")) ++line_;
            if (c != ' ' && c != '\t' && !is_end(c)) return;
        }
    }

    template <typename Stop>
    std::string_view take(Stop stop)
    {
        const std::size_t from = at_;
        while (at_ < text_.size() && !stop(text_[at_])) ++at_;
        return text_.substr(from, at_ - from);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
};

std::vector<Reference> scan_scene(const fs::path& file)
{
    std::vector<Reference> found;
    const std::string text = read_front(file, max_scanned_bytes);
    SceneText scene(text);
    while (found.size() < max_references) {
        const std::string_view word = scene.token();
        if (word.empty()) break;
        if (word == "AddNullObject") {
            scene.rest_of_line(); // a name, whatever it says
        } else if (word == "LoadObject") {
            const std::string_view path = scene.rest_of_line().substr(0, 255); // as much as the reader keeps
            if (!path.empty()) found.push_back({ReferenceKind::object, std::string(path), "", scene.line()});
        } else if (word == "BGImage") {
            const std::string_view path = scene.token().substr(0, 255);
            if (!path.empty() && !platform::equal_in_any_case(path, "(none)"))
                found.push_back({ReferenceKind::image, std::string(path), "", scene.line()});
        }
    }
    return found;
}

// ---- objects -------------------------------------------------------------------------------------------------------

static std::string_view c_string(std::string_view bytes)
{
    return bytes.substr(0, bytes.find('\0'));
}

static void scan_surface(std::string_view body, std::vector<Reference>& found)
{
    const std::string_view name = c_string(body);
    std::size_t at = std::min(body.size(), (name.size() + 2) & ~std::size_t{1}); // with its end, padded to even
    while (body.size() - at >= 6 && found.size() < max_references) {
        const std::string_view id = body.substr(at, 4);
        const std::size_t claimed = be32(body.substr(at + 2, 4)) & 0xffff; // the two bytes behind the id
        at += 6;
        const std::size_t size = std::min(claimed, body.size() - at);
        const std::string_view path = c_string(body.substr(at, size));
        if ((id == "TIMG" || id == "RIMG") && !path.empty() && !platform::equal_in_any_case(path, "(none)"))
            found.push_back({ReferenceKind::image, std::string(path), std::string(name), 0});
        at = std::min(body.size(), at + size + (size & 1));
    }
}

std::vector<Reference> scan_object(const fs::path& file)
{
    std::vector<Reference> found;
    const std::string bytes = read_front(file, max_scanned_bytes);
    const std::string_view all = bytes;
    std::size_t at = 12; // behind FORM, the length and LWOB
    while (all.size() >= 8 && at <= all.size() - 8 && found.size() < max_references) {
        const std::string_view id = all.substr(at, 4);
        const std::size_t claimed = be32(all.substr(at + 4, 4));
        at += 8;
        const std::size_t size = std::min(claimed, all.size() - at);
        if (id == "SURF") scan_surface(all.substr(at, size), found);
        at += std::min(all.size() - at, size + (size & 1));
    }
    return found;
}

// ---- heads and names -----------------------------------------------------------------------------------------------

static Message problem_of(const std::string& name, std::string_view head)
{
    const std::string_view type = head.substr(0, 4) == "FORM" && head.size() >= 12 ? head.substr(8, 4) : "";
    const bool readable = std::all_of(type.begin(), type.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (type == "LWO2" || type == "LWLO") return message<"input-of-later-kind">(name, type);
    if (type == "LWOB") return message<"input-holds-nothing">(name);
    if (!type.empty() && readable) return message<"input-other-iff">(name, type);
    if (head.substr(0, 4) == "FORM") return message<"input-cut-off">(name);
    return message<"input-foreign">(name);
}

FileHead read_head(const fs::path& file)
{
    FileHead head;
    const std::string name = platform::shown_name(file.string());
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        head.problem = message<"input-missing">(name);
    } else if (error) {
        head.problem = message<"input-unreadable">(name, error.message());
    } else if (fs::is_directory(status)) {
        head.problem = message<"input-directory">(name);
    } else if (!fs::is_regular_file(status)) {
        head.problem = message<"input-irregular">(name);
    } else if (const File opened{std::fopen(file.string().c_str(), "rb")}; !opened) {
        head.problem = message<"input-unreadable">(name, std::strerror(errno));
    } else {
        head.size = fs::file_size(file, error);
        if (error) head.size = 0;
        char bytes[256];
        errno = 0;
        const std::string_view front(bytes, std::fread(bytes, 1, sizeof bytes, opened.get()));
        if (front.substr(0, 4) == "LWSC") {
            head.kind = FileKind::scene;
            SceneText text(front);
            text.token();
            const std::string_view version = text.token();
            std::from_chars(version.data(), version.data() + version.size(), head.scene_version);
        } else if (front.size() >= 12 && front.substr(0, 4) == "FORM" && front.substr(8, 4) == "LWOB" &&
                   be32(front.substr(4, 4)) != 0) {
            head.kind = FileKind::object;
        } else if (front.empty()) {
            head.problem =
                errno ? message<"input-unreadable">(name, std::strerror(errno)) : message<"input-empty">(name);
        } else {
            head.problem = problem_of(name, front);
        }
    }
    return head;
}

bool is_called(std::string_view stored, std::string_view name)
{
    const std::string_view last = platform::last_element(stored);
    if (platform::equal_in_any_case(last, name)) return true;
    if (last.size() != name.size() || last.size() < 4) return false;
    const std::size_t stem = last.size() - 4;
    return last[stem] == '.' && name.substr(stem) == ".iff" &&
           platform::equal_in_any_case(last.substr(0, stem), name.substr(0, stem));
}

} // namespace host
