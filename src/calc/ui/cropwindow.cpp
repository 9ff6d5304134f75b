// crop window base
