#include "tool/request_body.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

#include "tool/output.h"
#include "tool/printable.h"

namespace corvella {

namespace {

constexpr std::size_t piece_size = 65536;

/// Whether a form carries the whole of a name or value.
bool fits_into_form(const char *text)
{
    std::string lines;
    std::string body;
    const FormField field = {text, ""};
    build_form_body(1, &field, lines, body);
    std::string whole(3 * std::strlen(text) + 1, '\0');
    whole.resize(std::strlen(form_escape(whole.data(), text)));
    return body == whole + "=";
}

/// A name for a message, which a long one would fill.
std::string shortened(const char *name)
{
    constexpr std::size_t most_bytes = 60;
    const std::string text = printable_text(name);
    return text.size() <= most_bytes ? text : text.substr(0, most_bytes) + "...";
}

/// Makes room for the whole of a regular file.
/// \throws std::bad_alloc if it is larger than a string can be.
void reserve_for(int descriptor, std::string &body)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0) {
        return;
    }
    const auto size = static_cast<unsigned long long>(status.st_size);
    if (size > body.max_size()) {
        throw std::bad_alloc();
    }
    body.reserve(static_cast<std::size_t>(size));
}

/// Appends the rest of a file. \return 0, or the errno of the read that failed.
int read_all(int descriptor, std::string &body)
{
    char piece[piece_size];
    ssize_t count;
    reserve_for(descriptor, body);
    while ((count = read(descriptor, piece, sizeof piece)) != 0) {
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        const std::size_t bytes = count > 0 ? static_cast<std::size_t>(count) : 0;
        if (bytes > body.max_size() - body.size()) {
            throw std::bad_alloc();
        }
        body.append(piece, bytes);
    }
    return 0;
}

/// Reports a failed read. \return whether \p error is none.
bool finish_read(const char *name, int error)
{
    if (error != 0) {
        report_error(std::string("Read of ") + name + " failed: " + std::strerror(error));
    }
    return error == 0;
}

bool read_file(const char *path, std::string &body)
{
    const int descriptor = open(path, O_RDONLY);
    if (descriptor < 0) {
        return finish_read(path, errno);
    }
    // Closes on every return, an exception included.
    const std::unique_ptr<const int, void (*)(const int *)> closer(
        &descriptor, [](const int *opened) { close(*opened); });
    return finish_read(path, read_all(descriptor, body));
}

} // namespace

bool read_request_body(const char *path, std::string &body)
{
    if (std::strcmp(path, "-") == 0) {
        return finish_read("standard input", read_all(STDIN_FILENO, body));
    }
    return read_file(path, body);
}

std::string field_error(const FormField &field)
{
    constexpr char limit[] = " is too long: a form carries 1023 characters of it, where a space "
                             "counts 1 and any other escaped byte counts 3.";
    if (!fits_into_form(field.name)) {
        return "The name '" + shortened(field.name) + "'" + limit;
    }
    if (!fits_into_form(field.value)) {
        return "The value of '" + shortened(field.name) + "'" + limit;
    }
    return "";
}

} // namespace corvella
