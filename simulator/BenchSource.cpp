// SPDX-License-Identifier: MIT
#include "simulator/BenchSource.h"

#include "resourcemanager/VisaCalls.h"
#include "simulator/Instrument.h"

#include <chrono>

#include <sys/stat.h>

namespace simulator {

resourcemanager::SearchResult BenchSource::search(const resourcemanager::Search& search)
{
    resourcemanager::SearchResult result;
    result.count = m_bench.count(search.text);
    for (const BenchResource& resource : m_bench.resources()) {
        for (std::uint32_t number = 1; number <= resource.size(); ++number) {
            if (number % 0x1000 == 0 && search.cancellation.isCancelled()) {
                return result;
            }
            std::string text = resource.numbered(number);
            if (search.expression.matches(text)) {
                if (!resource.hasEnd) {
                    text.resize(VI_FIND_BUFLEN, 'x');
                }
                result.descriptions.push_back(std::move(text));
            }
        }
    }
    return result;
}

ViStatus BenchSource::open(std::string_view text, const visa::ResourceName& name,
                           std::shared_ptr<resourcemanager::Object>& instrument)
{
    const BenchResource* const known = m_bench.find(text);
    if (known == nullptr) {
        return VI_ERROR_RSRC_NFOUND;
    }
    instrument = std::make_shared<Instrument>(name, known->identification);
    return VI_SUCCESS;
}

std::optional<ViStatus> BenchSource::beforeCall(Call call, std::uint32_t nth,
                                                std::string_view expression,
                                                const resourcemanager::Cancellation& cancellation)
{
    if (call == Call::FindRsrc) {
        cancellation.waitFor(m_bench.scanTime(expression));
    }
    const std::string path = m_bench.waitForFile(call, nth, expression);
    struct stat found;
    while (!path.empty() && ::stat(path.c_str(), &found) != 0 &&
           !cancellation.waitFor(std::chrono::milliseconds(2))) {
    }
    return m_bench.status(call, nth, expression);
}

} // namespace simulator
