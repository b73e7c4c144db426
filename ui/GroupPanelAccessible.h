// What the group panel tells screen readers.
#pragma once

/// Has the panel describe itself as a list, and its entries as what can be chosen there. Further
/// calls do nothing.
void installGroupPanelAccessible();
