#include "filters/stream.h"

#include "runtime/exception.h"

namespace corvane {

namespace {

std::int32_t entryStream(Filter& filter, Operation operation, std::byte* buffer,
                         std::int32_t* argument) {
    auto& stream = static_cast<StreamFilter&>(filter);
    switch (operation) {
    case Operation::read:
        if (*argument > 0) {
            *argument = readFile(stream.file, {buffer, static_cast<std::size_t>(*argument)});
        }
        return *argument;
    case Operation::write:
        if (*argument > 0) {
            *argument = writeFile(stream.file, {buffer, static_cast<std::size_t>(*argument)});
        }
        return *argument;
    case Operation::seek:
        return *argument = seekFile(stream.file, *argument);
    case Operation::mark:
        return *argument = markFile(stream.file);
    case Operation::link:
        openFile(stream.file, stream.volume, stream.fileName, stream.mode);
        return 0;
    case Operation::unlink:
        closeFile(stream.file);
        return 0;
    default:
        return 0;
    }
}

} // namespace

StreamFilter::StreamFilter(std::int16_t volumeReference, std::string_view name,
                           std::string_view fileMode)
    : Filter(entryStream), volume(volumeReference), fileName(name), mode(fileMode) {}

StreamFilter::~StreamFilter() {
    dropFile(file); // an abandoned stream still gives its descriptor back
}

FilterOwner setupStream(std::int16_t volume, std::string_view name, std::string_view mode) {
    return std::make_unique<StreamFilter>(volume, name, mode);
}

} // namespace corvane
