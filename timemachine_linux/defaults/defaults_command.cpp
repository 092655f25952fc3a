#include "timemachine_linux/defaults/defaults_command.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <istream>
#include <iterator>
#include <ostream>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/linux/files/user_defaults_file.h"
#include "platform/linux/files/user_folders.h"
#include "platform/text/property_list_text.h"
#include "platform/text/property_list_xml.h"
#include "timemachine_linux/defaults/defaults_value.h"

namespace norvane {

namespace {

constexpr int exitSuccess = 0;
constexpr int exitFailure = 1;
constexpr int exitUsage = 255;

constexpr std::string_view extension = ".plist";
constexpr std::string_view globalName = "NSGlobalDomain";
constexpr std::string_view globalFile = ".GlobalPreferences";

constexpr std::string_view usage = R"(Command line interface to a user's defaults.
Syntax:

'defaults' followed by one of the following:

  read                                 shows all defaults
  read <domain>                        shows defaults for given domain
  read <domain> <key>                  shows defaults for given domain, key

  write <domain> <key> <value>         writes key for domain
  write <domain> <property list>       replaces all defaults of the domain

  delete <domain>                      deletes domain
  delete <domain> <key>                deletes key in domain

  export <domain> <path>               writes the domain as XML to path
  export <domain> -                    writes the domain as XML to standard output
  import <domain> <path>               replaces the domain by the property list at path
  import <domain> -                    replaces the domain by the property list on standard input

  domains                              lists all domains
  help                                 prints this help

<domain> is a name such as org.norvane.Norvane, -g or -globalDomain, or the path of a property-list file.

<value> is one of:
  <string or property list>
  -string <text>
  -data <hexadecimal digits>
  -int[eger] <number>
  -float <number>
  -bool[ean] (true | false | yes | no)
  -date <date>                         such as 2024-05-01T10:15:00Z
  -array <value> ...
  -array-add <value> ...
  -dict <key> <value> ...
)";

struct Domain {
    std::string name; ///< As the person wrote it.
    std::string path;
};

Domain domainOf(const std::string& argument) {
    if (argument == "-g" || argument == "-globalDomain" || argument == globalName)
        return {std::string(globalName), preferencesFile(globalFile)};
    if (argument.find('/') == std::string::npos)
        return {argument, preferencesFile(argument)};
    std::string path = argument;
    if (path.ends_with(extension))
        path.erase(path.size() - extension.size());
    // What a Mac keeps for all its users lives with this user's preferences.
    constexpr std::string_view machineWide = "/Library/Preferences/";
    if (path.starts_with(machineWide) && path.find('/', machineWide.size()) == std::string::npos)
        return {argument, preferencesFile(path.substr(machineWide.size()))};
    return {argument, path.append(extension)};
}

/// The names of the domains that hold anything, without the global one.
std::set<std::string> storedDomains() {
    std::set<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(preferencesFolder(), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string file = entry->path().filename();
        if (!file.ends_with(extension) || file == std::string(globalFile).append(extension))
            continue;
        const auto entries = UserDefaultsFile(entry->path()).all();
        if (entries && !entries->empty())
            names.insert(file.substr(0, file.size() - extension.size()));
    }
    return names;
}

class Defaults {
public:
    Defaults(const DefaultsCall& call, std::istream& in, std::ostream& out, std::ostream& err)
        : arguments_(call.arguments), logHeader_(call.logHeader), in_(in), out_(out), err_(err) {}

    int run() {
        const std::string command = arguments_.empty() ? "" : arguments_.front();
        const std::size_t count = arguments_.size();
        if (command == "read" && count == 1)
            return readAll();
        if (command == "read" && count <= 3)
            return withDomain(&Defaults::read);
        if (command == "write" && count == 3)
            return withDomain(&Defaults::writeDomain);
        if (command == "write" && count > 3)
            return withDomain(&Defaults::writeKey);
        if (command == "delete" && (count == 2 || count == 3))
            return withDomain(&Defaults::remove);
        if (command == "export" && count == 3)
            return withDomain(&Defaults::exportDomain);
        if (command == "import" && count == 3)
            return withDomain(&Defaults::importDomain);
        if (command == "domains" && count == 1)
            return listDomains();
        const bool asked = command == "help";
        (asked ? out_ : err_) << usage;
        return asked ? exitSuccess : exitUsage;
    }

private:
    using Entries = PropertyList::Dictionary;
    using Action = int (Defaults::*)(const Domain&, const Entries&);

    /// Runs a command over the present content of its domain, empty when the domain does not exist. A file
    /// that is there but cannot be read ends every command, so that none replaces it.
    int withDomain(Action action) {
        const Domain domain = domainOf(arguments_[1]);
        std::error_code error;
        // In this order: another process may just be making the file.
        const auto type = std::filesystem::symlink_status(domain.path, error).type();
        const auto entries = UserDefaultsFile(domain.path).all();
        if (!entries && type != std::filesystem::file_type::not_found)
            return logFailure("Domain " + domain.name + " cannot be read: " + domain.path +
                              " is not a readable property list");
        return (this->*action)(domain, entries.value_or(Entries{}));
    }

    int readAll() {
        Entries all;
        for (const std::string& name : storedDomains())
            all.insert_or_assign(
                name, PropertyList{UserDefaultsFile(preferencesFile(name)).all().value_or(Entries{})});
        if (auto global = UserDefaultsFile(preferencesFile(globalFile)).all(); global && !global->empty())
            all.insert_or_assign("Apple Global Domain", PropertyList{std::move(*global)});
        out_ << writeTextPropertyList(PropertyList{std::move(all)}) << '\n';
        return exitSuccess;
    }

    int read(const Domain& domain, const Entries& entries) {
        if (arguments_.size() == 3)
            return readKey(domain, entries);
        if (entries.empty())
            return logFailure("Domain " + domain.name + " does not exist");
        out_ << writeTextPropertyList(PropertyList{entries}) << '\n';
        return exitSuccess;
    }

    int readKey(const Domain& domain, const Entries& entries) {
        const auto entry = entries.find(arguments_[2]);
        if (entry == entries.end())
            return logFailure("The domain/default pair of (" + domain.name + ", " + arguments_[2] +
                              ") does not exist");
        const std::string text = writeTextPropertyList(entry->second);
        // A single value is printed without its quotes and escapes: as it reads back.
        const auto plain = parseTextPropertyList(text);
        out_ << (plain && plain->string() ? *plain->string() : text) << '\n';
        return exitSuccess;
    }

    int writeKey(const Domain& domain, const Entries&) {
        const auto parsed = parseDefaultsValue(arguments_.subspan(3));
        if (!parsed)
            return fail(parsed.failure().text + "; leaving defaults unchanged.");
        const PropertyList& value = parsed->value;
        const bool appends = parsed->appends;
        bool fits = true;
        const bool stored = update(domain, [&](Entries& entries) {
            const auto entry = entries.find(arguments_[2]);
            if (!appends || entry == entries.end()) {
                entries.insert_or_assign(arguments_[2], value);
                return;
            }
            auto* const present = std::get_if<PropertyList::Array>(&entry->second.value);
            fits = present != nullptr;
            if (present)
                present->insert(present->end(), value.array()->begin(), value.array()->end());
        });
        if (!fits)
            return fail("Value for key " + arguments_[2] +
                        " is not an array; cannot append.  Leaving defaults unchanged.");
        return stored ? exitSuccess : notStored(domain);
    }

    int writeDomain(const Domain& domain, const Entries&) {
        const auto list = parsePropertyListArgument(arguments_[2]);
        if (!list)
            return fail("Could not parse: " + arguments_[2] + "; leaving defaults unchanged.");
        return replaceDomain(domain, *list);
    }

    int importDomain(const Domain& domain, const Entries&) {
        const std::string& path = arguments_[2];
        std::ifstream file;
        if (path != "-")
            file.open(path, std::ios::binary);
        std::istream& source = path == "-" ? in_ : file;
        const std::string text{std::istreambuf_iterator<char>(source), {}};
        const auto list = parsePropertyList(text);
        if (!list)
            return fail("Could not parse " + path + " as a property list; leaving defaults unchanged.");
        return replaceDomain(domain, *list);
    }

    int replaceDomain(const Domain& domain, const PropertyList& list) {
        if (!list.dictionary())
            return fail("Rep argument is not a dictionary\nDefaults have not been changed.");
        const bool stored = update(domain, [&](Entries& entries) { entries = *list.dictionary(); });
        return stored ? exitSuccess : notStored(domain);
    }

    int remove(const Domain& domain, const Entries& entries) {
        const bool whole = arguments_.size() == 2;
        if (whole ? entries.empty() : !entries.contains(arguments_[2]))
            return logFailure("Domain (" + domain.name + ") not found.\nDefaults have not been changed.");
        const bool stored = update(domain, [&](Entries& present) {
            if (whole)
                present.clear();
            else
                present.erase(arguments_[2]);
        });
        return stored ? exitSuccess : notStored(domain);
    }

    int exportDomain(const Domain&, const Entries& entries) {
        const std::string text =
            writeXmlPropertyList(PropertyList{entries}, PlistDatePrecision::wholeSeconds);
        if (arguments_[2] == "-") {
            out_ << text;
            return exitSuccess;
        }
        std::ofstream file(arguments_[2], std::ios::binary);
        file << text;
        file.close();
        return file ? exitSuccess : fail("Could not write to " + arguments_[2] + ".");
    }

    int listDomains() {
        std::string_view separator;
        for (const std::string& name : storedDomains()) {
            out_ << separator << name;
            separator = ", ";
        }
        out_ << '\n';
        return exitSuccess;
    }

    static bool update(const Domain& domain, const std::function<void(Entries&)>& change) {
        return UserDefaultsFile(domain.path).update(change);
    }

    int notStored(const Domain& domain) {
        return fail("Could not write domain " + domain.name + "; exiting");
    }

    int logFailure(const std::string& message) { return fail(logHeader_ + '\n' + message); }

    int fail(const std::string& message) {
        err_ << message << '\n';
        return exitFailure;
    }

    const std::span<const std::string> arguments_;
    const std::string& logHeader_;
    std::istream& in_;
    std::ostream& out_;
    std::ostream& err_;
};

} // namespace

int runDefaults(const DefaultsCall& call, std::istream& in, std::ostream& out, std::ostream& err) {
    const int exitCode = Defaults(call, in, out, err).run();
    out.flush();
    return out ? exitCode : exitFailure;
}

} // namespace norvane
