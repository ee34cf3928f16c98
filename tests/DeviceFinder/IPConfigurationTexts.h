#pragma once

// What the IP configuration dialog says about a field.

constexpr char RangeText[] = "IP addresses in the 224.*.*.* to 255.*.*.* range cannot be assigned to a device.";
constexpr char OtherSubnetText[] = "Device IP Address does not match Interface Subnet.";
constexpr char EndText[] = "IP addresses ending by 0 or 255 are invalid.";
constexpr char SameAddressText[] = "The IP Address cannot be the same as the Interface!";
constexpr char OtherMaskText[] = "Device Subnet Mask should match Interface Subnet Mask.";
constexpr char InvalidMaskText[] = "Invalid subnet mask.";
constexpr char OtherGatewayText[] = "Device Gateway does not match Interface Subnet.";

constexpr char Mask24[] = "255.255.255.0";
