// pwext: a command-line tool for people who write and test extension
// definitions. Each command lives in commands/.
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <utility>

#include "command.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace pwext {

static std::vector<Command>& Registry() {
    static std::vector<Command> commands;
    return commands;
}

bool RegisterCommand(const Command& command) {
    Registry().push_back(command);
    return true;
}

const std::vector<Command>& Commands() { return Registry(); }

}  // namespace pwext

static void PrintHelp(std::ostream& out) {
    out << "usage: pwext COMMAND [ARGS...]\n\ncommands:\n";
    for (const auto& c : pwext::Commands()) out << "  " << c.name << "\t" << c.summary << "\n";
}

int main(int argc, char** argv) {
#ifdef _WIN32
    // Outputs are bytes (definitions, decoded payloads): no CR LF translation.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stdin), _O_BINARY);
#endif
    std::ios::sync_with_stdio(false);
    if (argc < 2) {
        PrintHelp(std::cerr);
        return 2;
    }
    std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        PrintHelp(std::cout);
        return 0;
    }
    pwext::Args args(argv + 2, argv + argc);
    for (const auto& c : pwext::Commands()) {
        if (name != c.name) continue;
        try {
            return c.run(std::move(args));
        } catch (const pwext::UsageError& e) {
            std::cerr << "pwext: " << e.message << "\n";
            return 2;
        } catch (const pwext::Failure& e) {
            std::cerr << "pwext: " << e.message << "\n";
            return 1;
        } catch (const std::bad_alloc&) {
            std::cerr << "pwext: out of memory\n";
            return 1;
        } catch (const std::exception& e) {
            std::cerr << "pwext: " << e.what() << "\n";
            return 1;
        }
    }
    std::cerr << "pwext: unknown command '" << name << "' (try 'pwext --help')\n";
    return 2;
}
