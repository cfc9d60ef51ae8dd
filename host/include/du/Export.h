#pragma once

/// Marks a class or function of the host that programs and plug-in libraries link against. Type information is exported
/// with the class, so that run-time type tests agree across libraries.
#define ZR_HOST_API __attribute__((visibility("default")))
