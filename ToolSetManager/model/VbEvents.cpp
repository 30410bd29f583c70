#include "model/VbEvents.h"

namespace VbEvents {

const std::array<Event, eventCount> events {{
    {u"After Add File", u"AfterAddFile"},
    {u"After Change File Name", u"AfterChangeFileName"},
    {u"After Close File", u"AfterCloseFile"},
    {u"After Remove File", u"AfterRemoveFile"},
    {u"After Write File", u"AfterWriteFile"},
    {u"Before Load File", u"BeforeLoadFile"},
    {u"Do Get New File Name", u"DoGetNewFileName"},
    {u"Request Change File Name", u"RequestChangeFileName"},
    {u"Request Write File", u"RequestWriteFile"},
    {u"Item Added", u"ReferenceItemAdded"},
    {u"Item Removed", u"ReferenceItemRemoved"},
    {u"Item Added", u"SelControlItemAdded"},
    {u"Item Removed", u"SelControlItemRemoved"},
    {u"Item Added", u"ControlItemAdded"},
    {u"Item Removed", u"ControlItemRemoved"},
    {u"Item Renamed", u"ControlItemRenamed"},
    {u"Item Activated", u"CompItemActivated"},
    {u"Item Added", u"CompItemAdded"},
    {u"Item Reloaded", u"CompItemReloaded"},
    {u"Item Removed", u"CompItemRemoved"},
    {u"Item Renamed", u"CompItemRenamed"},
    {u"Item Selected", u"CompItemSelected"},
    {u"Item Activated", u"ProjItemActivated"},
    {u"Item Added", u"ProjItemAdded"},
    {u"Item Removed", u"ProjItemRemoved"},
    {u"Item Renamed", u"ProjItemRenamed"},
}};

const std::array<Group, groupCount> groups {{
    {u"File Events", u"File control events handled:", 0, 8},
    {u"Reference Events", u"Reference events handled:", 9, 10},
    {u"Selected Control Events", u"Selected control events handled:", 11, 12},
    {u"Control Events", u"Control events handled:", 13, 15},
    {u"Component Events", u"Component events handled:", 16, 21},
    {u"Project Events", u"Project events handled:", 22, 25},
}};

} // namespace VbEvents
