#include "usage_errors.h"

#include <regex>

namespace kodbc_cli {

std::string GermanUsageError(const std::string &complaint) {
    // The parser's forms, each with the German that keeps its names and values.
    static const std::pair<std::regex, const char *> forms[] = {
        {std::regex("A subcommand is required"), "ein Befehl fehlt"},
        {std::regex("(.+) is required"), "$1 fehlt"},
        {std::regex("The following arguments? (?:was|were) not expected: (.*)"), "nicht erwartet: $1"},
        {std::regex("(\\S+): \\d+ required \\S+ missing"), "$1 braucht einen Wert"},
        {std::regex("(\\S+) excludes (\\S+)"), "$1 und $2 schließen einander aus"},
        {std::regex("(\\S+) requires (\\S+)"), "$1 braucht $2"},
        {std::regex("Could not convert: (\\S+) = (.*)"), "$1: '$2' ist kein gültiger Wert"},
        {std::regex("(\\S+): (.*) not in \\{(.*)\\}"), "$1: '$2' ist nicht erlaubt (erlaubt: $3)"},
    };
    for (const auto &[form, german] : forms) {
        std::smatch match;
        if (std::regex_match(complaint, match, form)) return match.format(german);
    }
    return "falscher Aufruf: " + complaint;
}

} // namespace kodbc_cli
