#include "cli/program.hpp"

#include "cli/file.hpp"

#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Cli {

namespace {

// Splits at blanks; quotes of either kind keep them, and a backslash takes the next character as it is.
std::vector<std::string> wordsOf(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool isInWord = false;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == 0 && (c == ' ' || c == '\t' || c == '\r')) {
            if (isInWord) words.push_back(std::exchange(word, ""));
            isInWord = false;
            continue;
        }
        if (quote == 0 && !isInWord && c == '#') break;
        isInWord = true;
        if (quote == 0 && (c == '"' || c == '\''))
            quote = c;
        else if (c == quote)
            quote = 0;
        else if (c == '\\' && quote != '\'' && i + 1 < line.size())
            word += line[++i];
        else
            word += c;
    }
    if (quote != 0) throw std::invalid_argument(std::string("falta a aspa final ") + quote);
    if (isInWord) words.push_back(word);
    return words;
}

// The same failure, with its line named.
Failure inLine(std::size_t number, const std::exception& error) {
    const std::string text = "linha " + std::to_string(number) + ": " + error.what();
    if (const auto* failure = dynamic_cast<const Failure*>(&error))
        return {failure->status, text, failure->address, failure->function};
    const bool isUsage = dynamic_cast<const std::invalid_argument*>(&error) != nullptr;
    return {isUsage ? ExitStatus::wrongUsage : ExitStatus::failed, text};
}

void checkAllowed(const std::vector<std::string>& words) {
    for (const std::string& word : words)
        for (const char* const option : {"--port", "--bridge", "--demo", "--verbose"})
            if (word.starts_with(option))
                throw std::invalid_argument(std::string(option) +
                                            " vale para o arquivo inteiro: ponha antes de run");
    if (words.front() == "run") throw std::invalid_argument("um arquivo não executa outro");
}

}  // namespace

void runScript(Session& session, const std::string& file, bool keepGoing) {
    // Commands on standard input run as they come.
    std::istringstream text(file == "-" ? "" : readFile(file));
    std::istream& input = file == "-" ? std::cin : text;
    session.canAsk = file != "-";
    std::optional<ExitStatus> first;
    std::string line;
    const bool json = session.json;
    const bool yes = session.yes;
    for (std::size_t number = 1; std::getline(input, line); ++number) {
        session.json = json;
        session.yes = yes;
        try {
            const auto words = wordsOf(line);
            if (words.empty()) continue;
            checkAllowed(words);
            runCommand(session, words);
        } catch (const Interrupted&) {
            throw;
        } catch (const std::exception& error) {
            const Failure failure = inLine(number, error);
            if (!keepGoing) throw Failure(failure);
            const std::string text = textOf(std::make_exception_ptr(failure), json);
            std::fprintf(stderr, json ? "%s\n" : "corvane-cli: %s\n", text.c_str());
            if (!first) first = failure.status;
        }
    }
    if (first) throw Failure(*first, "nem todos os comandos de " + file + " deram certo");
}

}  // namespace Cli
