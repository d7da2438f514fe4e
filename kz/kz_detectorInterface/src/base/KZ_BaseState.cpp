#include "KZ_BaseState.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "KZ_Utils.h"

namespace KZ {

void BaseState::saveToDot(std::ostream& stream, StateAggregator*) {
    const std::string text = toStr(*this);
    const size_t bracket = text.find('(');
    std::string value;
    if (bracket != std::string::npos) value = text.substr(bracket + 1);
    if (!value.empty()) value.pop_back();
    stream << "<tr><td border=\"1\">" << text.substr(0, bracket)
           << "</td><td align=\"left\" border=\"1\">"
           << replaceString(value, "\n", "<br align=\"left\"/>") << "</td></tr>\n";
}

std::ostream& operator<<(std::ostream& stream, const BaseState& state) {
    state.print(stream);
    return stream;
}

std::string tagName(const std::type_info& tag) {
    const std::unique_ptr<char, void (*)(void*)> readable(
        abi::__cxa_demangle(tag.name(), nullptr, nullptr, nullptr), std::free);
    const std::string name = readable ? readable.get() : tag.name();
    const size_t start = name.find_last_of(':') + 1;
    return name.substr(name[start] == '_' ? start + 1 : start);
}

}  // namespace KZ
