#pragma once

// What the IP configuration dialog says about a field.

constexpr char sRange[] = "IP addresses in the 224.*.*.* to 255.*.*.* range cannot be assigned to a device.";
constexpr char sOtherSubnet[] = "Device IP Address does not match Interface Subnet.";
constexpr char sEnd[] = "IP addresses ending by 0 or 255 are invalid.";
constexpr char sSameAddress[] = "The IP Address cannot be the same as the Interface!";
constexpr char sOtherMask[] = "Device Subnet Mask should match Interface Subnet Mask.";
constexpr char sInvalidMask[] = "Invalid subnet mask.";
constexpr char sOtherGateway[] = "Device Gateway does not match Interface Subnet.";

constexpr char sMask24[] = "255.255.255.0";
