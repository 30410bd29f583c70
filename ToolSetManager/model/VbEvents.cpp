#include "model/VbEvents.h"

namespace VbEvents {

const std::array<Event, eventCount> events {{
    {0, u"After Add File", u"AfterAddFile"},
    {0, u"After Change File Name", u"AfterChangeFileName"},
    {0, u"After Close File", u"AfterCloseFile"},
    {0, u"After Remove File", u"AfterRemoveFile"},
    {0, u"After Write File", u"AfterWriteFile"},
    {0, u"Before Load File", u"BeforeLoadFile"},
    {0, u"Do Get New File Name", u"DoGetNewFileName"},
    {0, u"Request Change File Name", u"RequestChangeFileName"},
    {0, u"Request Write File", u"RequestWriteFile"},
    {1, u"Item Added", u"ReferenceItemAdded"},
    {1, u"Item Removed", u"ReferenceItemRemoved"},
    {2, u"Item Added", u"SelControlItemAdded"},
    {2, u"Item Removed", u"SelControlItemRemoved"},
    {3, u"Item Added", u"ControlItemAdded"},
    {3, u"Item Removed", u"ControlItemRemoved"},
    {3, u"Item Renamed", u"ControlItemRenamed"},
    {4, u"Item Activated", u"CompItemActivated"},
    {4, u"Item Added", u"CompItemAdded"},
    {4, u"Item Reloaded", u"CompItemReloaded"},
    {4, u"Item Removed", u"CompItemRemoved"},
    {4, u"Item Renamed", u"CompItemRenamed"},
    {4, u"Item Selected", u"CompItemSelected"},
    {5, u"Item Activated", u"ProjItemActivated"},
    {5, u"Item Added", u"ProjItemAdded"},
    {5, u"Item Removed", u"ProjItemRemoved"},
    {5, u"Item Renamed", u"ProjItemRenamed"},
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
