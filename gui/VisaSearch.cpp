// SPDX-License-Identifier: MIT
#include "gui/VisaSearch.h"

#include "visa/SearchAttributes.h"
#include "visa/VisaApi.h"

#include <algorithm>
#include <array>

namespace gui {

namespace {

/// The count comes from the library and is not trusted: cap the reservation.
constexpr ViUInt32 s_largestReservation = 4096;

/// A session to the default resource manager, closed at the end of its life. No status is
/// checked: without a session the calls that follow fail as well.
class ResourceManager
{
public:
    ResourceManager() { viOpenDefaultRM(&m_session); }
    ~ResourceManager() { viClose(m_session); }
    ResourceManager(const ResourceManager&) = delete;
    ResourceManager& operator=(const ResourceManager&) = delete;

    void setAttribute(ViAttr attribute, ViAttrState value) const
    {
        viSetAttribute(m_session, attribute, value);
    }

    ViSession session() const { return m_session; }

private:
    ViSession m_session = VI_NULL;
};

/// The find list of one search and the description reported last.
class FindList
{
public:
    ViStatus find(const ResourceManager& resourceManager, ViConstString expression)
    {
        return viFindRsrc(resourceManager.session(), expression, &m_handle, &m_count,
                          m_description.data());
    }
    ViStatus next() { return viFindNext(m_handle, m_description.data()); }
    void close() const { viClose(m_handle); }

    ViUInt32 count() const { return m_count; }
    ViConstString description() const { return m_description.data(); }
    QString text() const { return QString::fromUtf8(description()); }

private:
    ViFindList m_handle = VI_NULL;
    ViUInt32 m_count = 0;
    /// One more than the library may write, so that a description without terminating zero ends.
    std::array<ViChar, VI_FIND_BUFLEN + 1> m_description{};
};

} // namespace

QStringList findAllResources()
{
    const ResourceManager resourceManager;
    resourceManager.setAttribute(visa::searchInterfacesAttribute, visa::allInterfaces);
    resourceManager.setAttribute(visa::searchTimeAttribute, visa::searchTime);
    QStringList resources;
    FindList list;
    // Deliberately not closed unless something was found with plain success.
    if (list.find(resourceManager, "?*") != VI_SUCCESS || list.count() == 0) {
        return resources;
    }
    resources.reserve(static_cast<int>(std::min(list.count(), s_largestReservation)));
    resources.append(list.text());
    for (ViUInt32 index = 1; index < list.count(); ++index) {
        if (list.next() == VI_SUCCESS) {
            resources.append(list.text());
        }
    }
    list.close();
    resources.sort(Qt::CaseSensitive);
    return resources;
}

std::vector<SerialPort> findSerialPorts()
{
    const ResourceManager resourceManager;
    resourceManager.setAttribute(visa::searchInterfacesAttribute, visa::localInterfaces);
    std::vector<SerialPort> ports;
    FindList list;
    if (list.find(resourceManager, "ASRL?*") < VI_SUCCESS) {
        return ports;
    }
    for (ViUInt32 left = list.count(); left > 0; --left) {
        ViUInt16 interfaceType = 0;
        ViUInt16 interfaceNumber = 0;
        viParseRsrc(resourceManager.session(), list.description(), &interfaceType,
                    &interfaceNumber);
        ports.push_back({list.text(), interfaceNumber});
        // Also called after the last one. Whatever the count says, the first status other than
        // success ends the list.
        if (list.next() != VI_SUCCESS) {
            break;
        }
    }
    list.close();
    return ports;
}

} // namespace gui
