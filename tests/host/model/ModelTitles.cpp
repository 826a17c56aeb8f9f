// The title manager and the two kinds of configuration.
#include "host/model/ServiceModel.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace brisk::model {

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

std::string parentOf(const std::string& path) {
    const std::size_t separator = path.rfind('\\');
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char each) { return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each; });
    return text;
}

// The names that lie directly in a folder, folders marked.
std::vector<std::pair<std::string, bool>> entriesOf(const Environment& env, const std::string& folder) {
    std::vector<std::pair<std::string, bool>> entries;
    for (const std::string& each : env.folders) {
        if (parentOf(each) == folder) {
            entries.emplace_back(each.substr(folder.size() + 1), true);
        }
    }
    for (const auto& [path, file] : env.files) {
        if (parentOf(path) == folder) {
            entries.emplace_back(path.substr(folder.size() + 1), false);
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::int32_t toNumber(const std::string& text) {
    const bool isNegative = text.starts_with('-');
    std::size_t position = isNegative ? 1 : 0;
    if (position == text.size() || text[position] < '0' || text[position] > '9') {
        throw Failure{"invalid stoi argument"};
    }
    std::int64_t number = 0;
    for (; position < text.size() && text[position] >= '0' && text[position] <= '9'; ++position) {
        number = std::min<std::int64_t>(number * 10 + (text[position] - '0'), 1'000'000'000'000);
    }
    number = isNegative ? -number : number;
    if (number < kLowest || number > kHighest) {
        throw Failure{"stoi argument out of range"};
    }
    return static_cast<std::int32_t>(number);
}

} // namespace

bool ServiceModel::isSupported(const std::string& company, const std::string& binary, const std::string& folder) {
    LoadedTitle* title = find(binary);
    line("Brisk : publisher: '" + company + "', binary name: '" + binary + "'.");
    if (!title || (!company.empty() && company != title->title.publisher)) {
        return false;
    }
    return title->title.isText ? findText(*title, folder) : findRegistry(*title);
}

bool ServiceModel::needsOptimizing(const std::string& binary) {
    LoadedTitle* title = find(binary);
    if (!title) {
        return false;
    }
    if (!load(*title)) {
        line("Brisk : unable to load configuration.");
        return false;
    }
    return differs(*title) && meets(*title);
}

bool ServiceModel::differs(LoadedTitle& title) {
    for (const auto& [key, field] : title.title.fields) {
        std::string current;
        std::string required;
        if (!field.value.empty()) {
            current = getText(title, field.key, "");
            required = field.value;
        } else {
            current = std::to_string(getNumber(title, field.key, 0));
            required = std::to_string(wanted(field));
        }
        if (current != required) {
            line("Brisk : game setting '" + current + "' is not optimal '" + required + "'.");
            return true;
        }
    }
    return false;
}

bool ServiceModel::meets(LoadedTitle& title) {
    bool result = true;
    for (const Condition& condition : title.title.conditions) {
        const std::string key = title.title.keyOf(condition.key);
        const auto refuse = [&](const std::string& current) {
            pending += "Brisk : current configuration with key '" + key + "' and value '" + current +
                       "' doesn't meet requirements.";
        };
        const auto skip = [&] {
            line("Brisk : unable to find configuration field with key '" + key + "'. Skip patching.");
            result = false;
        };
        if (!condition.texts.empty()) {
            const std::string current = getText(title, condition.key, "");
            const auto& allowed = condition.texts;
            if (!current.empty() && std::find(allowed.begin(), allowed.end(), current) == allowed.end()) {
                refuse(current);
                return false;
            }
            if (current.empty() && !condition.absence) {
                skip();
            }
        }
        if (!condition.numbers.empty()) {
            const std::int32_t current = getNumber(title, condition.key, kHighest);
            const auto& allowed = condition.numbers;
            if (current != kHighest && std::find(allowed.begin(), allowed.end(), current) == allowed.end()) {
                refuse(std::to_string(current));
                return false;
            }
            if (current == kHighest && !condition.absence) {
                skip();
            }
        }
    }
    return result;
}

bool ServiceModel::optimize(const std::string& binary) {
    LoadedTitle* title = find(binary);
    if (!title || !load(*title) || title->title.fields.empty()) {
        return false;
    }
    bool changed = false;
    for (const auto& [key, field] : title->title.fields) {
        const bool isText = !field.value.empty();
        bool isMissing = false;
        if (field.createKey) {
            isMissing =
                isText ? getText(*title, field.key, "").empty() : getNumber(*title, field.key, kLowest) == kLowest;
        }
        if (isMissing) {
            std::string created = field.createValue;
            if (const std::size_t star = created.find('*'); star != std::string::npos) {
                created = created.substr(0, star) + (isText ? field.value : std::to_string(field.number)) +
                          created.substr(star + 1);
            }
            const TextKey target = title->title.isText ? *field.createKey : TextKey{"Created", {}, {}};
            changed = setText(*title, target, created) || changed;
        } else if (isText) {
            changed = setText(*title, field.key, field.value) || changed;
        } else {
            changed = setNumber(*title, field.key, wanted(field)) || changed;
        }
    }
    if (!changed || !save(*title)) {
        return false;
    }
    line("Brisk : '" + title->title.name + "' optimized.");
    return true;
}

bool ServiceModel::patch(const std::string& binary) {
    if (!optimize(binary)) {
        line("Brisk : failed to patch " + binary);
        return false;
    }
    Key* key = createKey("setPatched", "software\\orlan\\briskgct\\patchedapps");
    const bool marked = key && writeNumber("setPatched", *key, binary, 1);
    line((marked ? "Brisk : patch marker set for " : "Brisk : failed to set patch marker for ") + binary);
    return true;
}

std::string ServiceModel::settingText(const std::string& binary) {
    const LoadedTitle* title = find(binary);
    if (title && title->title.luma != 0) {
        for (const auto& [key, field] : title->title.fields) {
            if (!field.text.empty()) {
                return field.text;
            }
        }
    }
    return {};
}

std::int32_t ServiceModel::wanted(const Field& field) const {
    const auto value = resolutions.find(field.meta);
    return value == resolutions.end() ? field.number : value->second;
}

void ServiceModel::setResolution(const std::string& prefix, const Mode& mode) {
    resolutions[prefix + "width"] = static_cast<std::int32_t>(mode.width);
    resolutions[prefix + "height"] = static_cast<std::int32_t>(mode.height);
}

bool ServiceModel::findText(LoadedTitle& title, const std::string& folder) {
    for (std::string& location : title.title.locations) {
        const std::size_t placeholder = location.find("%APPDIR%");
        if (!folder.empty() && location.front() == '%' && placeholder != std::string::npos) {
            location = location.substr(0, placeholder) + folder + location.substr(placeholder + 8);
        }
        if (!resolveStar(location)) {
            continue;
        }
        line("Brisk : checking path '" + location + "'.");
        if (attributes(location, "exists")) {
            line("Brisk : config found.");
            return true;
        }
        line("Brisk : config not found.");
    }
    return false;
}

bool ServiceModel::resolveStar(std::string& location) {
    const std::size_t star = location.find('*');
    if (star == std::string::npos) {
        return true;
    }
    const std::string folder = location.substr(0, star - 1);
    if (!attributes(folder, "status").value_or(false)) {
        return false;
    }
    if (env.fails(Fault::FindFirst)) {
        if (env.codeOf(Fault::FindFirst) == 2) {
            return true;
        }
        throw Failure{std::string("filesystem error: directory_iterator::directory_iterator: ") + kAnyTextFollows};
    }
    auto entries = entriesOf(env, folder);
    entries.insert(entries.begin(), {{".", false}, {"..", false}});
    for (const auto& [name, isFolder] : entries) {
        if (isFolder) {
            location.replace(star, 1, name);
            return true;
        }
        if (env.fails(Fault::FindNext)) {
            if (env.codeOf(Fault::FindNext) == 18) {
                return true;
            }
            throw Failure{std::string("filesystem error: directory_iterator::operator++: ") + kAnyTextFollows};
        }
    }
    return true;
}

std::optional<bool> ServiceModel::attributes(const std::string& path, const char* operation) {
    if (env.fails(Fault::Attributes)) {
        const std::int32_t code = env.codeOf(Fault::Attributes);
        if (code == 2 || code == 3 || code == 53 || code == 123) {
            return std::nullopt;
        }
        throw Failure{std::string("filesystem error: ") + operation + ": " + kAnyTextFollows};
    }
    if (env.folders.contains(path)) {
        return true;
    }
    return env.files.contains(path) ? std::optional(false) : std::nullopt;
}

bool ServiceModel::load(LoadedTitle& title) {
    if (!title.title.isText) {
        return title.hive != nullptr;
    }
    for (const std::string& location : title.title.locations) {
        if (env.canRead && env.files.contains(location)) {
            title.content = env.files[location].content;
            return true;
        }
    }
    return false;
}

bool ServiceModel::save(LoadedTitle& title) {
    if (!title.title.isText) {
        return true;
    }
    for (const std::string& location : title.title.locations) {
        const bool isValid = location.find('*') == std::string::npos && env.folders.contains(parentOf(location)) &&
                             !env.folders.contains(location);
        const bool isReadOnly = env.files.contains(location) && env.files[location].readOnly;
        if (env.canWrite && isValid && !isReadOnly) {
            env.files[location].content = title.content;
            title.content.clear();
            ++filesVersion;
            return true;
        }
    }
    return false;
}

std::string ServiceModel::getText(LoadedTitle& title, const TextKey& key, const std::string& missing) {
    if (title.title.isText) {
        const std::string text = title.content.c_str();
        const auto match = key.find(text, 0);
        return match ? text.substr(match->value, match->valueLength) : missing;
    }
    const bool sizeFailed = env.fails(Fault::QueryValue);
    const Key* open = openKey(title);
    const auto find = [&]() -> const Value* {
        const auto value = open ? open->values.find(key.name) : std::map<std::string, Value>::const_iterator();
        return open && value != open->values.end() ? &value->second : nullptr;
    };
    const Value* value = find();
    const std::size_t size = value && !sizeFailed ? value->data.size() : 0;
    if (env.fails(Fault::QueryValue) || !value || value->data.size() > size) {
        return missing;
    }
    return value->data.c_str();
}

std::int32_t ServiceModel::getNumber(LoadedTitle& title, const TextKey& key, std::int32_t missing) {
    if (title.title.isText) {
        return toNumber(getText(title, key, std::to_string(missing)));
    }
    const Key* open = openKey(title);
    if (env.fails(Fault::QueryValue) || !open || !open->values.contains(key.name)) {
        return missing;
    }
    const std::string& data = open->values.at(key.name).data;
    std::int32_t number = 0;
    if (data.size() > sizeof number) {
        return missing;
    }
    std::memcpy(&number, data.data(), data.size());
    return number;
}

bool ServiceModel::setText(LoadedTitle& title, const TextKey& key, const std::string& text) {
    if (!title.title.isText) {
        return writeValue(title, key.name, {1, text + '\0'});
    }
    std::string changed;
    std::size_t copied = 0;
    for (auto match = key.find(title.content, 0); match; match = key.find(title.content, copied)) {
        changed += title.content.substr(copied, match->value - copied) + text + key.terminator;
        copied = match->end;
    }
    title.content = changed + title.content.substr(copied);
    return true;
}

bool ServiceModel::setNumber(LoadedTitle& title, const TextKey& key, std::int32_t number) {
    if (title.title.isText) {
        return setText(title, key, std::to_string(number));
    }
    return writeValue(title, key.name, {4, {reinterpret_cast<const char*>(&number), sizeof number}});
}

bool ServiceModel::findRegistry(LoadedTitle& title) {
    const std::string& location = title.title.locations.front();
    const std::size_t separator = location.find('/');
    if (separator == std::string::npos) {
        return false;
    }
    std::string path = location.substr(separator + 1);
    std::replace(path.begin(), path.end(), '/', '\\');
    line("Brisk : checking registry path '" + path + "'.");
    const std::string root = location.substr(0, separator);
    title.hive = nullptr;
    auto* hive = root == "HKEY_CURRENT_USER"    ? &env.currentUser
                 : root == "HKEY_LOCAL_MACHINE" ? &env.localMachine
                                                : nullptr;
    std::int32_t code = 0;
    if (env.fails(Fault::OpenKeyEx)) {
        code = env.codeOf(Fault::OpenKeyEx);
    } else if (!hive) {
        code = 6;
    } else if (!hive->contains(lower(path))) {
        code = 2;
    }
    if (code != 0) {
        line("Brisk : RegOpenKeyEx failed. Error " + std::to_string(code) + ".");
        return false;
    }
    title.hive = hive;
    title.keyPath = lower(path);
    title.keyGeneration = (*hive)[title.keyPath].generation;
    ++openAdapterKeys;
    return true;
}

// Null when the key was deleted since it was opened.
Key* ServiceModel::openKey(LoadedTitle& title) {
    const auto key = title.hive->find(title.keyPath);
    return key != title.hive->end() && key->second.generation == title.keyGeneration ? &key->second : nullptr;
}

bool ServiceModel::writeValue(LoadedTitle& title, const std::string& name, const Value& value) {
    const bool failed = env.fails(Fault::SetValue);
    Key* open = openKey(title);
    if (failed || !open) {
        line("Brisk : setValue failed for '" + name + "'. Error " +
             std::to_string(failed ? env.codeOf(Fault::SetValue) : 1018) + ".");
        return false;
    }
    open->values[name] = value;
    ++registryVersion;
    return true;
}

Key* ServiceModel::createKey(const char* operation, const char* path) {
    if (env.fails(Fault::CreateKey)) {
        if (operation) {
            line(std::string("Brisk : ") + operation + " : RegCreateKeyEx failed. Error " +
                 std::to_string(env.codeOf(Fault::CreateKey)) + ".");
        }
        return nullptr;
    }
    env.makeKey(env.currentUser, path);
    ++registryVersion;
    return &env.currentUser[path];
}

std::optional<std::int32_t> ServiceModel::readNumber(const Key& key, const std::string& name) {
    const auto value = key.values.find(name);
    std::int32_t number = 0;
    if (env.fails(Fault::QueryValue) || value == key.values.end() || value->second.data.size() > sizeof number) {
        return std::nullopt;
    }
    std::memcpy(&number, value->second.data.data(), value->second.data.size());
    return number;
}

bool ServiceModel::writeNumber(const char* operation, Key& key, const std::string& name, std::uint32_t number) {
    if (env.fails(Fault::SetValue)) {
        line(std::string("Brisk : ") + operation + " : RegSetValueEx failed. Error " +
             std::to_string(env.codeOf(Fault::SetValue)) + ".");
        return false;
    }
    key.values[name] = {4, {reinterpret_cast<const char*>(&number), sizeof number}};
    ++registryVersion;
    return true;
}

} // namespace brisk::model
