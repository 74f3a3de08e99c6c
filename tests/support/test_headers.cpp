// Nothing but the precompiled headers of all tests comes of this.
