#include "doctor/Options.h"
#include "program/Options.h"
#include "program/Products.h"
#include "program/client/Words.h"

#include <cstdint>
#include <cstdlib>

// A command line that is the input, a word a line: each of the three programs that may get it
// understands it, or says in a sentence why not.

namespace {

void mustHold(bool condition) {
    if (!condition) std::abort();
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words{""};
    for (const char letter : text) {
        if (letter == '\n')
            words.emplace_back();
        else if (letter != '\0')
            words.back() += letter;
    }
    return words;
}

void askClient(int count, char** words) {
    try {
        const client::Words understood = client::parse(count, words);
        if (understood.command == nullptr || understood.help) return;
        const auto given = static_cast<int>(understood.arguments.size());
        mustHold(given >= understood.command->least && given <= understood.command->most);
        mustHold(!understood.json || understood.command->prints);
    } catch (const client::Failure& failure) {
        mustHold(failure.status == client::Exit::wrongUsage && !failure.sentence.empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto line = wordsOf({reinterpret_cast<const char*>(data), size});
    const std::vector<std::string> known(products::names.begin(), products::names.end());
    const doctor::Options doctor = doctor::parseOptions(line, known);
    mustHold(doctor.error ? !doctor.error->empty() : products::contain(doctor.product));

    std::vector<char*> words;
    for (std::string& word : line)
        words.push_back(word.data());
    words.push_back(nullptr); // as the system hands them over
    const int count = static_cast<int>(line.size());
    askClient(count, words.data());
    const ParsedOptions program = parseOptions(count, words.data());
    mustHold(program.error ? !program.error->empty() : products::contain(program.options.product));
    return 0;
}
