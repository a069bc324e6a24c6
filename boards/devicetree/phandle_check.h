// Refuses device trees whose phandles lead round in a circle.
#pragma once

class CDeviceTree;

// What a node hangs on is the node that its "i2c-parent", "i2c-bus" or
// "mdio-parent-bus" names, else the node that holds it. Code that walks up
// that way must arrive at the root. Throws CDiagException with the property
// that closes the circle and the nodes of it.
void CheckPhandleCycles(const CDeviceTree& tree);
