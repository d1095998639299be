#include "bench/harness.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace {

struct named_comparison {
    const char *subject;
    Agreement::Comparison agree;
};

std::vector<named_comparison> &comparisons()
{
    static std::vector<named_comparison> all;
    return all;
}

} // namespace

Agreement::Agreement(const char *subject, Comparison agree)
{
    comparisons().push_back({subject, agree});
}

bool all_agree()
{
    bool agree = true;
    for (const named_comparison &comparison : comparisons()) {
        if (!comparison.agree()) {
            std::fprintf(stderr, "ours and the peer differ: %s\n", comparison.subject);
            agree = false;
        }
    }
    return agree;
}

std::string repeated(const char *sentence, std::size_t length)
{
    std::string text;
    while (text.size() < length) {
        text += sentence;
    }
    text.resize(length);
    return text;
}

StandardErrorTo::StandardErrorTo(const char *path) : saved_(dup(STDERR_FILENO))
{
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (saved_ < 0 || file < 0 || dup2(file, STDERR_FILENO) < 0) {
        throw std::runtime_error("cannot redirect standard error");
    }
    close(file);
}

StandardErrorTo::~StandardErrorTo()
{
    dup2(saved_, STDERR_FILENO);
    close(saved_);
}

TemporaryDirectory::TemporaryDirectory()
    : path_((std::filesystem::temp_directory_path() / "corvella-bench-XXXXXX").string())
{
    if (mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("cannot make a temporary directory");
    }
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}
