#pragma once

/// Makes assistive technology read the trees of features, with their values and states; called by each tree.
void InstallFeatureTreeAccessibility();
