#include "cli/file.hpp"

#include <fstream>
#include <iostream>
#include <stdexcept>

namespace Cli {

std::string readFile(const std::string& path) {
    std::ifstream file;
    if (path != "-") file.open(path, std::ios::binary);
    std::istream& input = path == "-" ? std::cin : file;
    std::string text(mostFileBytes + 1, '\0');  // one byte more than is allowed shows that there is more
    if (input) input.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(input.gcount()));
    // A read that ends early leaves `eof`; a folder cannot be read and leaves `bad`.
    if (!input.eof() && text.size() <= mostFileBytes)
        throw std::runtime_error("não foi possível ler " + path);
    if (text.size() > mostFileBytes)
        throw std::runtime_error(path + " tem mais de " + std::to_string(mostFileBytes >> 20) + " MiB");
    return text;
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text << std::flush;
    if (!file) throw std::runtime_error("não foi possível escrever " + path);
}

}  // namespace Cli
