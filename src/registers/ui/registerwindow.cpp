// base
