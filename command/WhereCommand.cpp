// SPDX-License-Identifier: MIT
#include "command/Commands.h"

#include "command/CommandLine.h"
#include "config/Encoding.h"
#include "config/ProcessEnvironment.h"
#include "config/SearchPlaces.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <optional>

namespace QvVisa {

namespace {

std::string_view verdictWord(PlaceVerdict verdict)
{
    switch (verdict) {
    case PlaceVerdict::Unset:
        return "unset";
    case PlaceVerdict::Missing:
        return "missing";
    case PlaceVerdict::NotRegular:
        return "notRegular";
    case PlaceVerdict::Denied:
        return "denied";
    case PlaceVerdict::Used:
        return "used";
    case PlaceVerdict::Shadowed:
        return "shadowed";
    }
    return {};
}

/// -f wins over every place.
std::vector<SearchPlace> withFileOption(std::vector<SearchPlace> places, const std::string& file)
{
    SearchEnvironment environment;
    environment.configurationFile = file;
    SearchPlace option = searchPlaces(environment).front();
    option.place = "-f";
    for (SearchPlace& place : places) {
        if (place.verdict == PlaceVerdict::Used) {
            place.verdict = PlaceVerdict::Shadowed;
        }
    }
    places.insert(places.begin(), option);
    return places;
}

std::string padded(std::string_view text, std::size_t width)
{
    std::string result(text);
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

void printPlaces(Output& output, const std::string& file, const std::vector<SearchPlace>& places)
{
    if (output.isJson()) {
        Json object;
        object["schema"] = "qvvisa-where/1";
        object["file"] = pathToUtf8(file);
        object["candidates"] = Json::array();
        for (const SearchPlace& place : places) {
            Json candidate;
            candidate["place"] = place.place;
            candidate["path"] = pathToUtf8(place.path);
            candidate["verdict"] = verdictWord(place.verdict);
            object["candidates"].push_back(std::move(candidate));
        }
        output.json(object);
        return;
    }
    output.data(printable(file.empty() ? "no configuration file" : pathToUtf8(file)) + '\n');
    constexpr std::size_t verdictWidth = 12;
    constexpr std::size_t placeWidth = 16;
    for (const SearchPlace& place : places) {
        std::string line = "  " + padded(verdictWord(place.verdict), verdictWidth) +
                           padded(place.place, placeWidth) + printable(pathToUtf8(place.path));
        line.erase(line.find_last_not_of(' ') + 1);
        output.data(line + '\n');
    }
}

ExitCode runWhere(CommandContext& context, const std::optional<std::string>& pid)
{
    const bool isOther = pid.has_value();
    const std::optional<SearchEnvironment> environment =
        isOther ? searchEnvironmentOf(*pid) : searchEnvironment();
    if (!environment) {
        throw CommandError(ExitCode::WrongUsage,
                           "there is no process " + *pid + ", or it may not be looked at");
    }
    std::vector<SearchPlace> places = searchPlaces(*environment);
    if (context.file && !isOther) {
        if (*context.file == "-") {
            throw CommandError(ExitCode::WrongUsage, "standard input has no place");
        }
        places = withFileOption(std::move(places), *context.file);
    }
    // -f is not followed by a search, whether or not its file exists.
    const auto end = context.file && !isOther ? places.begin() + 1 : places.end();
    const auto used = std::find_if(places.begin(), end, [](const SearchPlace& place) {
        return place.verdict == PlaceVerdict::Used;
    });
    if (used == end) {
        if (context.output.isJson()) {
            throw CommandError(ExitCode::NoFile, "no configuration file was found");
        }
        printPlaces(context.output, {}, places);
        return ExitCode::NoFile;
    }
    printPlaces(context.output, used->path, places);
    return ExitCode::Done;
}

} // namespace

void addWhereCommand(CommandLine& line)
{
    auto pid = std::make_shared<std::optional<std::string>>();
    CommandOptions command =
        line.addCommand("where", "Show the file in use and each place of the search",
                        [pid](CommandContext& context) { return runWhere(context, *pid); });
    command.addOption("--pid", *pid, "Search with this process's environment and working folder")
        .typeName("N");
}

} // namespace QvVisa
