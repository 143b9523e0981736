# Install rules and exported package.
