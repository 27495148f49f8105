#include "mutants.h"

#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

// Gives the good plugin the names of all mutants, beside it: by its name it knows which one to be.
int main(int argc, char **argv)
{
    if (argc != 2)
        return EXIT_FAILURE;
    const fs::path good = argv[1];
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(good.parent_path())) {
        // A name that is no mutant's any more.
        if (entry.path() != good && fs::hard_link_count(entry.path()) > 1)
            fs::remove(entry.path());
    }
    for (const QString &name : mutantNames()) {
        const fs::path link = good.parent_path() / (name.toStdString() + ".so");
        fs::remove(link, error);
        fs::create_hard_link(good, link, error);
        if (error) {
            std::cerr << link << ": " << error.message() << '\n';
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
