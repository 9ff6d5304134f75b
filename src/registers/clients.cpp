// clients
