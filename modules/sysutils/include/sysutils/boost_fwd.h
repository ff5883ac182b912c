#pragma once

/// Names of Boost for declarations. Their headers are costly to compile; who makes a path or a code includes them.
namespace boost::filesystem {
class path;
}
namespace boost::system {
class error_code;
}
